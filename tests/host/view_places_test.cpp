// Device and page places, the column of pages, and the telling of changes.
// SPDX-License-Identifier: MIT
#include "view/PageView.h"

#include <gtest/gtest.h>

#include "tests/host/ViewTestSupport.h"
#include "view/ViewPlatform.h"

using namespace jackdaw;
using namespace viewtest;

class Rotated : public testing::TestWithParam<std::tuple<int, KRFixed>> {};

TEST_P(Rotated, DeviceAndPageAgree) {
    const auto [rotate, zoom] = GetParam();
    const TestDoc file(pages(1, "/MediaBox [-20 -10 400 300] /CropBox [10 20 210 120] /Rotate " +
                                    std::to_string(rotate) + " /Annots [<< /Subtype /X /Rect [20 40 60 50] >>]"));
    const SCPageView view = SCDocGetPageView(file.view);
    SCPageViewZoomTo(view, SCZoomNoVary, zoom);
    SCRect aperture;
    SCPageViewGetAperture(view, &aperture);
    const bool sideways = rotate % 180 != 0;
    const int scale = zoom >> 16;
    EXPECT_EQ(aperture.right, (sideways ? 100 : 200) * scale);
    EXPECT_EQ(aperture.bottom, (sideways ? 200 : 100) * scale);

    SCRect device;
    const DMAnnot annot = DMPageGetAnnot(SCPageViewGetPage(view), 0);
    SCPageViewGetAnnotRect(view, annot, &device);
    const SCRect expected[] = {{10, 70, 50, 80}, {20, 10, 30, 50}, {150, 20, 190, 30}, {70, 150, 80, 190}};
    const SCRect &at1 = expected[rotate / 90];
    EXPECT_TRUE(device.left == at1.left * scale && device.top == at1.top * scale);
    EXPECT_TRUE(device.right == at1.right * scale && device.bottom == at1.bottom * scale);

    KRFixedRect page;
    SCPageViewDeviceRectToPage(view, &device, &page);
    EXPECT_TRUE(page.left == KRFixedFromInt(20) && page.bottom == KRFixedFromInt(40));
    EXPECT_TRUE(page.right == KRFixedFromInt(60) && page.top == KRFixedFromInt(50));
    const auto middleX = static_cast<std::int16_t>((device.left + device.right) / 2);
    const auto middleY = static_cast<std::int16_t>((device.top + device.bottom) / 2);
    KRFixedPoint point;
    SCPageViewDevicePointToPage(view, middleX, middleY, &point);
    EXPECT_EQ(point.h, KRFixedFromInt(40));
    EXPECT_EQ(point.v, KRFixedFromInt(45));
    DMAnnot hit{};
    EXPECT_TRUE(SCPageViewIsAnnotAtPoint(view, middleX, middleY, &hit));
    EXPECT_TRUE(DMAnnotEqual(hit, annot));
    EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, static_cast<std::int16_t>(device.right + 2), middleY, &hit));
}

INSTANTIATE_TEST_SUITE_P(Places, Rotated,
                         testing::Combine(testing::Values(0, 90, 180, 270),
                                          testing::Values(KRFixedOne, 3 * KRFixedOne)));

TEST(Places, PagesStandInOneColumn) {
    const TestDoc file(pages(3, "/Annots [<< /Subtype /X /Rect [0 0 50 50] >> << /Subtype /X /Rect [0 0 50 50] >> "
                                "<< /Subtype /X /F 2 /Rect [0 0 50 50] >>]"));
    const SCPageView view = SCDocGetPageView(file.view);
    EXPECT_EQ(SCPageViewGetFirstVisiblePageNum(view), 0);
    EXPECT_EQ(SCPageViewGetLastVisiblePageNum(view), 2);
    EXPECT_FALSE(SCPageViewIsPageVisible(view, 3));
    SCPageViewGoTo(view, 1);
    const DMAnnot onLast = [&] {
        const std::int32_t former = SCPageViewGetVisibleAnnotPage(view, 2);
        EXPECT_EQ(former, 1);
        const DMAnnot annot = DMPageGetAnnot(SCPageViewGetPage(view), 0);
        EXPECT_EQ(DMPageGetNumber(SCPageViewGetPage(view)), 2);
        return annot;
    }();
    SCRect rect;
    SCPageViewGetAnnotRect(view, onLast, &rect);
    EXPECT_EQ(rect.top, 110 + 120 - 50) << "below page 1, at the bottom of page 2";
    EXPECT_EQ(SCPageViewGetVisibleAnnotPage(view, 99), 2) << "a page that is not there changes nothing";
    EXPECT_EQ(SCPageViewGetVisibleAnnotPage(view, 1), 2);
    EXPECT_EQ(SCDMAnnotGetPageNum(view, onLast), 2);

    DMAnnot hit{};
    ASSERT_TRUE(SCPageViewIsAnnotAtPoint(view, 10, -10, &hit));
    EXPECT_EQ(SCDMAnnotGetPageNum(view, hit), 0);
    ASSERT_TRUE(SCPageViewIsAnnotAtPoint(view, 10, 220, &hit));
    EXPECT_EQ(SCDMAnnotGetPageNum(view, hit), 2);
    EXPECT_EQ(DMPageGetAnnotIndex(SCPageViewGetPage(view), hit), -1);
    SCPageViewGetVisibleAnnotPage(view, 2);
    EXPECT_EQ(DMPageGetAnnotIndex(SCPageViewGetPage(view), hit), 1) << "the topmost that is not hidden";
    for (const int y : {-200, 240})
        EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, 10, static_cast<std::int16_t>(y), &hit));
    std::int16_t x = 0;
    std::int16_t y = 0;
    SCPageViewGetMousePosition(view, &x, &y);
    EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, x, y, &hit)) << "no pointer is on no page";
}

TEST(Places, FarPagesAreClampedAndDeletedPagesForgotten) {
    const TestDoc file(pages(400));
    const SCPageView view = SCDocGetPageView(file.view);
    SCPageViewGetVisibleAnnotPage(view, 399);
    SCRect rect = RectToDevice(view, {0, KRFixedFromInt(10), KRFixedFromInt(10), 0});
    EXPECT_EQ(rect.top, 32767);
    SCPageViewGoTo(view, 399);
    const DMPage last = SCPageViewGetPage(view);
    rect = RectToDevice(view, {0, KRFixedFromInt(10), KRFixedFromInt(10), 0});
    EXPECT_EQ(rect.bottom, 100 + 3990);
    DMDocDeletePages(file.doc, 300, 399);
    EXPECT_EQ(SCPageViewGetPageNum(view), 299);
    EXPECT_EQ(DMPageGetNumber(SCPageViewGetPage(view)), 299);
    EXPECT_EQ(DMPageGetNumber(last), -1) << "a page that was handed out stays good until the view closes";
    EXPECT_EQ(Protect([&] { SCPageViewGoTo(view, 300); }), KRErrBadParam);
    SCPageViewZoomTo(view, SCZoomNoVary, 0x7FFFFFFF);
    EXPECT_EQ(SCPageViewGetZoom(view), MaxZoom);
    SCPageViewZoomTo(view, SCZoomNoVary, -5);
    EXPECT_EQ(SCPageViewGetZoom(view), MaxZoom);
}

TEST(Places, ChangesAreToldOnceForAnOperation) {
    const TestDoc file(pages(3));
    const SCPageView view = SCDocGetPageView(file.view);
    Listener listener;
    listener.name(file.view, "v");
    SCPageViewGoTo(view, 0);
    EXPECT_EQ(listener.take(), "");
    SCPageViewGoTo(view, 1);
    SCPageViewZoomTo(view, SCZoomNoVary, 2 * KRFixedOne);
    SCPageViewScrollTo(view, 5, 6);
    EXPECT_EQ(listener.take(), "14:v/3 14:v/4 14:v/1");
    SCPageViewBeginOperation(view);
    SCPageViewBeginOperation(view);
    SCPageViewGoTo(view, 2);
    SCPageViewZoomTo(view, SCZoomNoVary, KRFixedOne);
    SCPageViewEndOperation(view);
    EXPECT_EQ(listener.take(), "");
    SCPageViewEndOperation(view);
    EXPECT_EQ(listener.take(), "14:v/7");
    SCPageViewEndOperation(view);
    SCDocViewDef def{};
    SCDocGetViewDef(file.view, &def);
    SCPageViewGoTo(view, 0);
    SCDocSetViewDef(file.view, &def);
    EXPECT_EQ(SCPageViewGetPageNum(view), 2);
}

TEST(Places, AWindowShowsSomePages) {
    const TestDoc file(pages(6));
    const SCPageView view = SCDocGetPageView(file.view);
    Platform().getAperture = [](SCPageView, SCRect *rect) { *rect = {0, -30, 200, 300}; };
    Platform().openWindow = [](SCDoc) { return reinterpret_cast<SCWindow>(1); };
    {
        const TestDoc windowed(pages(6));
        const SCPageView inWindow = SCDocGetPageView(windowed.view);
        SCPageViewGoTo(inWindow, 2);
        EXPECT_EQ(SCPageViewGetFirstVisiblePageNum(inWindow), 1);
        EXPECT_EQ(SCPageViewGetLastVisiblePageNum(inWindow), 4);
        SCPageViewZoomTo(inWindow, SCZoomFitPage, 0);
        EXPECT_EQ(SCPageViewGetZoom(inWindow), KRFixedOne) << "200 across allow no more";
        EXPECT_EQ(SCPageViewGetLastVisiblePageNum(view), 5) << "a view without a window is not bound by one";
    }
    Platform() = {};
}
