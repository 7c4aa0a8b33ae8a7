// Pages: the page list over broken trees, geometry, annotations, insertion and deletion.
// SPDX-License-Identifier: MIT
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DocModelHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "doc/Document.h"
#include "doc/Notify.h"
#include "doc/Pages.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Objects.h"

namespace {

std::vector<std::string> s_heard;

void hear(const std::string &what) {
    s_heard.push_back(what);
}

KRProc procOf(auto *proc) {
    return reinterpret_cast<KRProc>(proc);
}

DMDoc open(const std::vector<std::string> &objects) {
    return jackdaw::OpenDocFromBytes(PdfText(objects), nullptr);
}

/** The marks `N` of all pages in order. */
std::string marks(DMDoc doc) {
    std::string all;
    for (std::int32_t i = 0; i < DMDocGetNumPages(doc); ++i) {
        const jackdaw::PageRef page(DMDocAcquirePage(doc, i));
        EXPECT_EQ(DMPageGetNumber(page.get()), i);
        all += Text(At(DMPageGetLexObj(page.get()), "N")) + " ";
    }
    return all;
}

class PagesTest : public testing::Test {
protected:
    void SetUp() override {
        s_heard.clear();
    }
    void TearDown() override {
        jackdaw::UnregisterNotificationsOf(extension);
    }
    void subscribe(std::int32_t number, KRProc proc) {
        jackdaw::RegisterNotification(number, extension, proc, nullptr);
    }
    static constexpr KRWord extension = 4712;
};

TEST_F(PagesTest, TheTreeIsWalkedAsItIs) {
    const TestDoc doc(
        open({"<< /Type /Catalog /Pages 2 0 R >>",
              "<< /Type /Pages /Count -7 /Kids [3 0 R 4 0 R 3 0 R null 5 (x) 99 0 R 2 0 R << /N 9 >> 5 0 R 1 0 R] >>",
              "<< /Type /Page /Parent 6 0 R /N 1 >>", "<< /Count 1000000000 /Kids [<< /Kids [6 0 R 3 0 R] >> 2 0 R] >>",
              "<< /Type /Pages /Kids /None >>", "<< /N 2 /Parent (none) >>"}));
    EXPECT_EQ(marks(doc), "1 2 9 ");
    EXPECT_EQ(Protect([&] { DMDocAcquirePage(doc, 3); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMDocAcquirePage(doc, -1); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMPageFromLexObj(doc.At("")); }), KRErrBadParam);
    for (const char *pages : {"", "/Pages 7", "/Pages 1 0 R", "/Pages []"}) {
        EXPECT_EQ(DMDocGetNumPages(TestDoc(open({std::string("<< /Type /Catalog ") + pages + " >>"}))), 0) << pages;
    }
}

TEST_F(PagesTest, OneHandleAPageWhileItsDocumentIsOpen) {
    DMPage page;
    {
        const TestDoc doc(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>", "<< /N 1 >>"}));
        page = DMDocAcquirePage(doc, 0);
        EXPECT_EQ(DMPageFromLexObj(DMPageGetLexObj(page)), page);
        EXPECT_EQ(DMPageAcquireAgain(page), page);
        EXPECT_EQ(DMPageGetDoc(page), doc.doc);
    }
    DMPageRelease(page);
    EXPECT_EQ(Protect([&] { DMPageGetDoc(page); }), KRErrBadParam);
}

struct Box {
    int left, bottom, right, top;
    bool operator==(const Box &) const = default;
};

Box boxOf(const KRFixedRect &r) {
    return {r.left >> 16, r.bottom >> 16, r.right >> 16, r.top >> 16};
}

TEST_F(PagesTest, BoxesAndRotationAreInheritedAndTamed) {
    struct Case {
        const char *page, *node;
        Box media, crop;
        int rotate;
    };
    const Case cases[] = {
        {"", "", {0, 0, 612, 792}, {0, 0, 612, 792}, 0},
        {"/MediaBox [100 200 0 0]", "/Rotate -90 /CropBox [-5 10 50 500]", {0, 0, 100, 200}, {0, 10, 50, 200}, 270},
        {"/MediaBox [0 0 0 0] /CropBox [900 900 950 950]", "/Rotate 450.0", {0, 0, 612, 792}, {0, 0, 612, 792}, 90},
        {"/MediaBox [0 0 (a) 1] /Rotate /X", "/MediaBox [0 0 9 9]", {0, 0, 612, 792}, {0, 0, 612, 792}, 0},
        {"/Rotate 2147483647", "/MediaBox [-99999 0 99999 9]", {-32768, 0, 32767, 9}, {-32768, 0, 32767, 9}, 90},
    };
    for (const Case &c : cases) {
        const TestDoc doc(open({"<< /Pages 2 0 R >>", std::string("<< /Kids [3 0 R] /Parent 3 0 R ") + c.node + " >>",
                                std::string("<< /Parent 2 0 R ") + c.page + " >>"}));
        const jackdaw::PageRef page(DMDocAcquirePage(doc, 0));
        KRFixedRect box;
        DMPageGetMediaBox(page.get(), &box);
        EXPECT_EQ(boxOf(box), c.media) << c.page;
        DMPageGetBBox(page.get(), &box);
        EXPECT_EQ(boxOf(box), c.crop) << c.page;
        EXPECT_EQ(DMPageGetRotate(page.get()), c.rotate) << c.page;
    }
}

TEST_F(PagesTest, TheDefaultMatrixSetsThePageUpright) {
    // The corner that is the lower left one when the page is looked at goes to the origin, its opposite to the size.
    struct Case {
        int rotate, left, bottom, right, top;
    };
    for (const Case &c :
         {Case{0, 10, 20, 110, 220}, {90, 110, 20, 10, 220}, {180, 110, 220, 10, 20}, {270, 10, 220, 110, 20}}) {
        const TestDoc doc(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>",
                                "<< /MediaBox [10 20 110 220] /Rotate " + std::to_string(c.rotate) + " >>"}));
        const jackdaw::PageRef page(DMDocAcquirePage(doc, 0));
        KRFixedMatrix m;
        DMPageGetDefaultMatrix(page.get(), &m);
        const auto apply = [&](int x, int y) {
            return std::pair(((m.a >> 16) * x + (m.c >> 16) * y + (m.e >> 16)),
                             ((m.b >> 16) * x + (m.d >> 16) * y + (m.f >> 16)));
        };
        const bool turned = c.rotate % 180 != 0;
        EXPECT_EQ(apply(c.left, c.bottom), std::pair(0, 0)) << c.rotate;
        EXPECT_EQ(apply(c.right, c.top), turned ? std::pair(200, 100) : std::pair(100, 200)) << c.rotate;
    }
}

class AnnotsTest : public PagesTest {
protected:
    void SetUp() override {
        PagesTest::SetUp();
        subscribe(DMPageWillRemoveAnnot,
                  procOf(+[](DMPage, std::int32_t i, void *) { hear("37 " + std::to_string(i)); }));
        subscribe(DMPageDidRemoveAnnot,
                  procOf(+[](DMPage, std::int32_t i, void *) { hear("42 " + std::to_string(i)); }));
        subscribe(DMPageWillAddAnnot, procOf(+[](DMPage p, DMAnnot a, void *) { hear("38 " + place(p, a)); }));
        subscribe(DMPageDidAddAnnot, procOf(+[](DMPage p, DMAnnot a, void *) { hear("39 " + place(p, a)); }));
        subscribe(DMAnnotWillChange, procOf(+[](DMAnnot a, KRAtom key, void *) {
                      hear(std::string("40 ") + KRAtomGetString(key) + " " + std::to_string(DMAnnotGetFlags(a)));
                  }));
        subscribe(DMAnnotDidChange, procOf(+[](DMAnnot a, KRAtom key, KRErrorCode error, void *) {
                      hear(std::string("41 ") + KRAtomGetString(key) + " " + std::to_string(DMAnnotGetFlags(a)) + " " +
                           std::to_string(error));
                  }));
    }
    static std::string place(DMPage page, DMAnnot annot) {
        return std::to_string(DMPageGetAnnotIndex(page, annot));
    }
    static std::string names(DMPage page) {
        std::string all;
        for (std::int32_t i = 0; i < DMPageGetNumAnnots(page); ++i) {
            const DMAnnot annot = DMPageGetAnnot(page, i);
            all += Text(At(DMAnnotGetLexObj(annot), "N")) + " ";
            EXPECT_EQ(DMPageGetAnnotIndex(page, annot), LexObjGetType(DMAnnotGetLexObj(annot)) == LexNull ? -1 : i);
        }
        return all;
    }
    static DMAnnot make(DMPage page, std::int32_t name) {
        const KRFixedRect rect{0, 0, 0, 0};
        const DMAnnot annot = DMPageCreateAnnot(page, Atom("Text"), &rect);
        const LexObj dict = DMAnnotGetLexObj(annot);
        LexDictPut(dict, Atom("N"), LexNewInteger(LexObjGetDoc(dict), 0, name));
        return annot;
    }
};

TEST_F(AnnotsTest, PlacesAndNotificationsOfAddingAndRemoving) {
    const TestDoc doc(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R 4 0 R] >>", "<< /Annots 7 >>", "<< >>"}));
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 0));
    EXPECT_EQ(DMPageGetNumAnnots(page.get()), 0);
    const DMAnnot one = make(page.get(), 1);
    DMPageAddAnnot(page.get(), DMAnnotLast, one);
    DMPageAddAnnot(page.get(), -1, make(page.get(), 2));
    DMPageAddAnnot(page.get(), 0, make(page.get(), 3));
    DMPageAddAnnot(page.get(), DMAnnotLast, make(page.get(), 4));
    EXPECT_EQ(names(page.get()), "2 3 1 4 ");
    EXPECT_TRUE(LexObjEqual(At(DMAnnotGetLexObj(one), "P"), DMPageGetLexObj(page.get())));
    EXPECT_EQ(s_heard, (std::vector<std::string>{"38 -1", "39 0", "38 -1", "39 0", "38 -1", "39 1", "38 -1", "39 3"}));
    s_heard.clear();
    DMPageRemoveAnnot(page.get(), 2);
    EXPECT_EQ(names(page.get()), "2 3 4 ");
    EXPECT_EQ(DMPageGetAnnotIndex(page.get(), one), -1);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"37 2", "42 2"}));
    s_heard.clear();
    const TestDoc other(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>", "<< >>"}));
    const jackdaw::PageRef foreign(DMDocAcquirePage(other, 0));
    EXPECT_EQ(Protect([&] { DMPageAddAnnot(foreign.get(), DMAnnotLast, one); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMPageAddAnnot(page.get(), 3, one); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMPageAddAnnot(page.get(), -3, one); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMPageRemoveAnnot(page.get(), 3); }), KRErrBadParam);
    EXPECT_TRUE(s_heard.empty());
}

TEST_F(AnnotsTest, OddArraysAndDirectAnnotations) {
    const TestDoc doc(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>",
                            "<< /Annots [<< /Subtype /Link /N 1 >> null 5 4 0 R 4 0 R << /N 6 >> 99 0 R] >>",
                            "<< /Subtype /Widget /N 2 /Rect [9 (a) 3 4] /F 4.0 >>"}));
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 0));
    ASSERT_EQ(DMPageGetNumAnnots(page.get()), 7);
    const DMAnnot direct = DMPageGetAnnot(page.get(), 0);
    EXPECT_TRUE(LexObjIsIndirect(DMAnnotGetLexObj(direct)));
    EXPECT_TRUE(DMAnnotEqual(direct, DMPageGetAnnot(page.get(), 0)));
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, 0u) << "looking is no change";
    EXPECT_FALSE(DMAnnotIsValid(DMPageGetAnnot(page.get(), 1)));
    EXPECT_FALSE(DMAnnotIsValid(DMPageGetAnnot(page.get(), 2)));
    EXPECT_EQ(DMAnnotGetSubtype(DMPageGetAnnot(page.get(), 5)), KRAtomNull);
    const DMAnnot twice = DMPageGetAnnot(page.get(), 4);
    EXPECT_EQ(DMPageGetAnnotIndex(page.get(), twice), 3);
    EXPECT_EQ(DMAnnotGetFlags(twice), DMAnnotPrint);
    KRFixedRect rect;
    EXPECT_EQ(Protect([&] { DMAnnotGetRect(twice, &rect); }), KRErrBadParam);
    DMPageRemoveAnnot(page.get(), 0);
    EXPECT_EQ(DMPageGetAnnotIndex(page.get(), twice), 2);
    EXPECT_EQ(DMPageGetAnnotIndex(page.get(), direct), -1);
}

TEST_F(AnnotsTest, SettersTellBeforeAndAfter) {
    const TestDoc doc(open({"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>", "<< >>"}));
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 0));
    const DMAnnot annot = make(page.get(), 1);
    DMAnnotSetFlags(annot, DMAnnotHidden | DMAnnotPrint);
    const KRFixedRect set{0x18000, 0, -0x10000, 0x20000};
    DMAnnotSetRect(annot, &set);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"40 F 0", "41 F 6 0", "40 Rect 6", "41 Rect 6 0"}));
    KRFixedRect got;
    DMAnnotGetRect(annot, &got);
    EXPECT_EQ(got.left, -0x10000);
    EXPECT_EQ(got.right, 0x18000);
    EXPECT_EQ(got.bottom, 0);
    EXPECT_EQ(got.top, 0x20000);
    EXPECT_EQ(Protect([&] { DMAnnotSetFlags(DMAnnotFromLexObj(LexNullObj), DMAnnotInvisible); }), KRErrBadParam);
    EXPECT_EQ(s_heard.size(), 4u);
}

/** Three pages in two nodes, marked 1 to 3. */
const std::vector<std::string> s_threePages = {
    "<< /Type /Catalog /Pages 2 0 R /Dest [5 0 R /Fit] >>",
    "<< /Type /Pages /Kids [3 0 R 6 0 R] /Count 3 /Rotate 90 /CropBox [0 0 50 50] /Resources << /Mine 1 >> >>",
    "<< /Type /Pages /Parent 2 0 R /Kids [4 0 R 5 0 R] /Count 2 >>",
    "<< /Type /Page /Parent 3 0 R /N 1 >>",
    "<< /Type /Page /Parent 3 0 R /N 2 >>",
    "<< /Type /Pages /Parent 2 0 R /Kids [7 0 R] /Count 1 >>",
    "<< /Type /Page /Parent 6 0 R /N 3 >>",
};

class PageEditTest : public PagesTest {
protected:
    void SetUp() override {
        PagesTest::SetUp();
        subscribe(DMDocWillInsertPages,
                  procOf(+[](DMDoc d, std::int32_t after, DMDoc, std::int32_t first, std::int32_t last, void *) {
                      hear("15 " + numbers({after, first, last, DMDocGetNumPages(d)}));
                  }));
        subscribe(DMDocDidInsertPages, procOf(+[](DMDoc d, std::int32_t after, DMDoc, std::int32_t first,
                                                  std::int32_t last, KRErrorCode error, void *) {
                      hear("16 " + numbers({after, first, last, DMDocGetNumPages(d), error}));
                  }));
        subscribe(DMDocWillDeletePages, procOf(+[](DMDoc d, std::int32_t first, std::int32_t last, void *) {
                      hear("21 " + numbers({first, last, DMDocGetNumPages(d)}));
                  }));
        subscribe(DMDocDidDeletePages,
                  procOf(+[](DMDoc d, std::int32_t first, std::int32_t last, KRErrorCode error, void *) {
                      hear("22 " + numbers({first, last, DMDocGetNumPages(d), error}));
                  }));
    }
    static std::string numbers(std::initializer_list<std::int32_t> all) {
        std::string line;
        for (const std::int32_t n : all) line += std::to_string(n) + " ";
        return line;
    }
    /** The document as another reader sees it: saved and opened again. */
    static std::string marksAfterSave(DMDoc doc) {
        const std::string path = TempFile("edited.pdf", "");
        std::FILE *const file = std::fopen(path.c_str(), "wb");
        jackdaw::SaveDocToStream(doc, file);
        std::fclose(file);
        return marks(TestDoc(jackdaw::OpenDocFromBytes(ReadAll(path), nullptr)));
    }
};

TEST_F(PageEditTest, DeletionEmptiesNodesFixesCountsAndForgetsThePage) {
    const TestDoc doc(open(s_threePages));
    const LexObj root = doc.At("Pages");
    EXPECT_EQ(Protect([&] { DMDocDeletePages(doc, 0, 2); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMDocDeletePages(doc, 2, 1); }), KRErrBadParam);
    EXPECT_TRUE(s_heard.empty());
    const DMPage held = DMDocAcquirePage(doc, 1);
    DMDocDeletePages(doc, 1, 2);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"21 1 2 3 ", "22 1 2 1 0 "}));
    EXPECT_EQ(marks(doc), "1 ");
    EXPECT_EQ(Text(At(root, "Count")), "1");
    EXPECT_EQ(LexArrayLength(At(root, "Kids")), 1);
    EXPECT_EQ(Text(At(root, "Kids/0/Count")), "1");
    EXPECT_EQ(LexObjGetType(doc.At("Dest/0")), LexNull);
    EXPECT_EQ(DMPageGetNumber(held), -1);
    EXPECT_EQ(DMPageGetRotate(held), 0);
    DMPageRelease(held);
    EXPECT_EQ(Protect([&] { DMPageGetDoc(held); }), KRErrBadParam);
    EXPECT_EQ(marksAfterSave(doc), "1 ");
}

TEST_F(PageEditTest, InsertionPutsWhatIsInheritedOnThePageAndShieldsItFromTheNewTree) {
    const TestDoc source(
        open({"<< /Pages 2 0 R >>",
              "<< /Kids [3 0 R 4 0 R] /MediaBox [0 0 300 400] /Resources << /F 5 0 R /Same 5 0 R >> >>",
              "<< /Parent 2 0 R /N 7 /Contents 5 0 R /B [4 0 R] /StructParents 1 /Next 4 0 R >>",
              "<< /Parent 2 0 R /N 8 /Own 6 0 R >>", "<< /Length 3 >>\nstream\nq Q\nendstream",
              "<< /Self 6 0 R /Root 1 0 R >>"}));
    const TestDoc doc(open(s_threePages));
    DMDocInsertPages(doc, 0, source, 0, 0);
    DMDocInsertPages(doc, -1, source, 1, 1);
    EXPECT_EQ(marks(doc), "8 1 7 2 3 ");
    EXPECT_EQ(marksAfterSave(doc), "8 1 7 2 3 ");
    EXPECT_EQ(marks(source), "7 8 ");
    EXPECT_EQ(s_heard.front(), "15 0 0 0 3 ");
    EXPECT_EQ(s_heard[1], "16 0 0 0 4 0 ");
    EXPECT_EQ(Text(doc.At("Pages/Count")), "5");
    EXPECT_EQ(Text(doc.At("Pages/Kids/0/Count")), "4");
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 2));
    const LexObj dict = DMPageGetLexObj(page.get());
    KRFixedRect box;
    DMPageGetBBox(page.get(), &box);
    EXPECT_EQ(boxOf(box), (Box{0, 0, 300, 400}));
    EXPECT_EQ(DMPageGetRotate(page.get()), 0);
    EXPECT_TRUE(LexObjEqual(At(dict, "Resources/F"), At(dict, "Contents"))) << "shared stays shared";
    EXPECT_EQ(LexStreamLength(At(dict, "Contents")), 3);
    for (const char *dropped : {"B", "StructParents", "Next"})
        EXPECT_FALSE(LexDictKnown(dict, Atom(dropped))) << dropped;
    const jackdaw::PageRef first(DMDocAcquirePage(doc, 0));
    const LexObj own = At(DMPageGetLexObj(first.get()), "Own");
    EXPECT_TRUE(LexObjEqual(At(own, "Self"), own)) << "a cycle stays whole";
    EXPECT_FALSE(LexDictKnown(own, Atom("Root")));
}

TEST_F(PageEditTest, WidgetsBringTheAncestorsOfTheirFieldsButNoOtherKids) {
    const TestDoc source(open(
        {"<< /Pages 2 0 R /AcroForm << /Fields [5 0 R] >> >>", "<< /Kids [3 0 R 4 0 R] >>",
         "<< /Parent 2 0 R /N 1 /Annots [7 0 R 8 0 R << /Subtype /Link /Dest [4 0 R /Fit] >>] >>",
         "<< /Parent 2 0 R /N 2 /Annots [9 0 R] >>", "<< /T (group) /V (all) /Kids [6 0 R 9 0 R] /Loop 5 0 R >>",
         "<< /T (inner) /FT /Tx /Parent 5 0 R /Kids [7 0 R 10 0 R 8 0 R] >>",
         "<< /Subtype /Widget /Parent 6 0 R /P 4 0 R /N 1 /A << /T [7 0 R 9 0 R] >> >>",
         "<< /Subtype /Widget /Parent 6 0 R /P 3 0 R /N 2 /Popup 7 0 R >>",
         "<< /Subtype /Widget /T (elsewhere) /Parent 5 0 R /P 4 0 R >>", "<< /Subtype /Widget /Parent 6 0 R /N 3 >>"}));
    const TestDoc doc(open(s_threePages));
    DMDocInsertPages(doc, 2, source, 0, 0);
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 3));
    const LexObj dict = DMPageGetLexObj(page.get());
    const LexObj widget = At(dict, "Annots/0");
    EXPECT_EQ(DMPageGetNumAnnots(page.get()), 3);
    EXPECT_TRUE(LexObjEqual(At(widget, "P"), dict));
    EXPECT_EQ(Text(At(widget, "Parent/T")), "inner");
    EXPECT_EQ(Text(At(widget, "Parent/Parent/V")), "all");
    EXPECT_EQ(LexArrayLength(At(widget, "Parent/Kids")), 2);
    EXPECT_TRUE(LexObjEqual(At(widget, "Parent/Kids/0"), widget));
    EXPECT_TRUE(LexObjEqual(At(widget, "Parent/Kids/1"), At(dict, "Annots/1")));
    EXPECT_EQ(LexArrayLength(At(widget, "Parent/Parent/Kids")), 1);
    EXPECT_TRUE(LexObjEqual(At(widget, "Parent/Parent/Loop"), At(widget, "Parent/Parent")));
    EXPECT_TRUE(LexObjEqual(At(widget, "A/T/0"), widget));
    EXPECT_EQ(LexObjGetType(At(widget, "A/T/1")), LexNull) << "a field that stays behind";
    EXPECT_EQ(LexObjGetType(At(dict, "Annots/2/Dest/0")), LexNull) << "a page that stays behind";
    EXPECT_EQ(LexObjGetType(doc.At("Tessella")), LexNull) << "the form is the plug-in's";
}

TEST_F(PageEditTest, WithinOneDocumentPagesShareContentsButNotWidgets) {
    std::vector<std::string> objects = s_threePages;
    objects[6] = "<< /Parent 6 0 R /N 3 /Contents 8 0 R /Annots [9 0 R] /Next 4 0 R >>";
    objects.push_back("<< /Length 1 >>\nstream\nq\nendstream");
    objects.push_back("<< /Subtype /Widget /T (f) /FT /Tx /AP << /N 10 0 R >> /Goto 4 0 R >>");
    objects.push_back("<< /Length 1 >>\nstream\nQ\nendstream");
    const TestDoc doc(open(objects));
    DMDocInsertPages(doc, 2, doc, 2, 2);
    EXPECT_EQ(marks(doc), "1 2 3 3 ");
    const jackdaw::PageRef old(DMDocAcquirePage(doc, 2));
    const jackdaw::PageRef copy(DMDocAcquirePage(doc, 3));
    const LexObj from = DMPageGetLexObj(old.get());
    const LexObj to = DMPageGetLexObj(copy.get());
    const auto sameAt = [&](const char *path) { return LexObjEqual(At(from, path), At(to, path)) != 0; };
    EXPECT_TRUE(sameAt("Contents"));
    EXPECT_TRUE(sameAt("Next"));
    EXPECT_TRUE(sameAt("Annots/0/Goto"));
    EXPECT_FALSE(sameAt("Annots/0"));
    EXPECT_FALSE(sameAt("Annots/0/AP/N"));
    EXPECT_EQ(Text(At(to, "Annots/0/T")), "f");
}

TEST_F(PageEditTest, BadTreesAndFailuresLeaveADocumentThatStands) {
    const TestDoc source(open(s_threePages));
    const TestDoc lone(open({"<< /Pages 2 0 R >>", "<< /Type /Page /N 1 >>"}));
    DMDocInsertPages(lone, 0, source, 0, 1);
    EXPECT_EQ(marksAfterSave(lone), "1 1 2 ");
    const TestDoc none(open({"<< /Type /Catalog >>"}));
    DMDocInsertPages(none, -1, source, 2, 2);
    EXPECT_EQ(marksAfterSave(none), "3 ");
    s_heard.clear();
    EXPECT_EQ(Protect([&] { DMDocInsertPages(none, 1, source, 0, 0); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMDocInsertPages(none, 0, source, 0, 3); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMDocInsertPages(none, 0, nullptr, 0, 0); }), KRErrBadParam);
    EXPECT_TRUE(s_heard.empty());
    // A subscriber takes away what was to be copied: nothing is inserted, and all hear why.
    subscribe(DMDocWillInsertPages, procOf(+[](DMDoc, std::int32_t, DMDoc from, std::int32_t, std::int32_t, void *) {
                  DMDocDeletePages(from, 1, 2);
              }));
    EXPECT_EQ(Protect([&] { DMDocInsertPages(none, 0, source, 2, 2); }), KRErrBadParam);
    EXPECT_EQ(s_heard.back(), "16 0 2 2 1 " + std::to_string(KRErrBadParam) + " ");
    EXPECT_EQ(marks(none), "3 ");
}

TEST_F(PageEditTest, LongChainsOfReferencesAreCopiedWithoutRecursion) {
    std::vector<std::string> objects = {"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] >>", "<< /N 1 /Next 4 0 R >>"};
    for (int i = 5; i < 20000; ++i) objects.push_back("<< /Next " + std::to_string(i) + " 0 R >>");
    objects.push_back("<< /End 1 >>");
    const TestDoc source(open(objects));
    const TestDoc doc(open(s_threePages));
    DMDocInsertPages(doc, 2, source, 0, 0);
    const jackdaw::PageRef page(DMDocAcquirePage(doc, 3));
    LexObj link = DMPageGetLexObj(page.get());
    int links = 0;
    while (LexObjGetType(At(link, "Next")) == LexDict) {
        link = At(link, "Next");
        ++links;
    }
    EXPECT_EQ(links, 19996);
    EXPECT_EQ(Text(At(link, "End")), "1");
}

} // namespace
