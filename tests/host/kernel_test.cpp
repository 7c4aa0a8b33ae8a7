// The kernel: frames and edges, tables and servers, atoms, numbers, errors.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <csetjmp>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "kernel/Apart.h"
#include "kernel/Atoms.h"
#include "kernel/Callbacks.h"
#include "kernel/Ending.h"
#include "kernel/Fixed.h"
#include "kernel/Frames.h"
#include "kernel/HostError.h"
#include "kernel/Memory.h"
#include "kernel/Tables.h"

using namespace jackdaw;

namespace {

KRErrorCode failingSlot(const char *what) {
    return Edge([&]() -> KRErrorCode { throw HostError{KRErrBadField, what}; });
}

std::string fixedText(KRFixed value, int size, int precision) {
    char buffer[32] = "";
    KRFixedToCString(value, buffer, size, precision);
    return buffer;
}

/** A code thrown by host code, 0 for none. */
template <class Body>
KRErrorCode thrownBy(Body &&body) {
    return CodeOf(std::forward<Body>(body));
}

} // namespace

TEST(Frames, RaiseReachesTheInnermostFrameAndUnwindsBothSides) {
    struct Watch {
        int &count;
        ~Watch() {
            ++count;
        }
    };
    int destroyed = 0;
    const std::size_t before = FrameCount();
    const KRErrorCode outer = Protect([&] {
        const KRErrorCode inner = Protect([&] {
            const Watch watch{destroyed};
            KRRaise(KRErrBadParam);
        });
        EXPECT_EQ(inner, KRErrBadParam);
        const Watch watch{destroyed};
        KRRaise(KRErrNone); // no code at all is a bad argument of the raise itself
    });
    EXPECT_EQ(outer, KRErrBadParam);
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(FrameCount(), before);
}

TEST(Frames, EdgeTurnsEveryExceptionIntoACode) {
    EXPECT_EQ(Protect([] { Edge([] { throw std::bad_alloc(); }); }), KRErrNoMemory);
    EXPECT_EQ(Protect([] { Edge([] { throw std::out_of_range("index"); }); }), KRErrBadParam);
    EXPECT_EQ(LastErrorText(), "index");
    struct Foreign {};
    AddExceptionTranslator([](KRErrorCode &code, std::string &what) {
        try {
            throw;
        } catch (const std::overflow_error &) {
            code = KRErrBadStream;
            what = "translated";
            return true;
        } catch (...) {
            return false;
        }
    });
    EXPECT_EQ(Protect([] { Edge([] { throw std::overflow_error("x"); }); }), KRErrBadStream);
    EXPECT_EQ(LastErrorText(), "translated");
    // A frame of a plug-in's on its way out is no failure of the edge that it crosses.
    EXPECT_THROW(Edge([] { throw Foreign{}; }), Foreign);
}

TEST(Frames, LongJumpLeavesAnEdgeCleanly) {
    std::jmp_buf env;
    KRPushExceptionFrame(&env, [](void *place) { std::longjmp(*static_cast<std::jmp_buf *>(place), 1); });
    if (setjmp(env) == 0) failingSlot("a sentence long enough to live on the heap, so that a leak shows");
    KRPopExceptionFrame();
    EXPECT_EQ(KRGetExceptionCode(), KRErrBadField);
}

TEST(Frames, HostFrameOutlivesACallbackThatForgetsItsOwn) {
    const std::size_t before = FrameCount();
    const auto forgetful = [] {
        KRPushExceptionFrame(nullptr, &RestorePlugInFrame);
        KRPushExceptionFrame(nullptr, &RestorePlugInFrame);
    };
    EXPECT_EQ(HostProtect(forgetful), KRErrNone);
    EXPECT_EQ(FrameCount(), before);
    EXPECT_EQ(HostProtect([] { KRRaise(KRErrTypeShared); }), KRErrTypeShared);
    EXPECT_EQ(HostProtect([] { throw std::bad_alloc(); }), KRErrNoMemory);
    EXPECT_EQ(FrameCount(), before);
}

TEST(Frames, SentenceStaysWithItsCode) {
    const KRErrorCode code = Protect([] { failingSlot("field 7 at offset 12"); });
    EXPECT_EQ(Protect([&] { RaiseIf(code); }), KRErrBadField);
    EXPECT_EQ(ErrorSentence(code), "field 7 at offset 12");
    (void)Protect([] { KRRaise(KRErrBadParam); });
    EXPECT_EQ(ErrorSentence(KRErrBadField).find("offset"), std::string::npos);
}

TEST(FramesDeathTest, RaiseWithoutAFrameEndsWithOneLine) {
    EXPECT_EXIT(KRRaise(KRErrDiskFull), testing::ExitedWithCode(ExitOfFailure),
                "^jackdaw: [^\n]*disk is full[^\n]*\n$");
    const auto comeBack = [] {
        KRPushExceptionFrame(nullptr, [](void *) {});
        KRRaise(KRErrDiskFull);
    };
    EXPECT_EXIT(comeBack(), testing::ExitedWithCode(ExitOfFailure), "came back");
}

TEST(Tables, ServedByVersionAndRefusedWhenNotWhole) {
    const KRAtom kernel = KRAtomFromString("KernelSupport");
    EXPECT_EQ(KRGetHFT(kernel, KRVersion(4, 2)), gKernelSupportHFT);
    EXPECT_EQ(KRGetHFT(kernel, KRVersion(4, 0)), gKernelSupportHFT);
    EXPECT_EQ(KRGetHFT(kernel, KRVersion(4, 3)), nullptr);
    EXPECT_EQ(KRGetHFT(kernel, KRVersion(3, 9)), nullptr);
    EXPECT_EQ(KRGetHFT(KRAtomNull, KRVersion(2, 0)), nullptr);
    EXPECT_EQ(KRGetHFT(KRAtomFromString("NetAnchor"), 1), nullptr);

    static KRHFT s_partial = nullptr;
    DefineTable(&s_partial, "Partial", KRVersion(1, 0), 3);
    ProvideSlot(&s_partial, 2, reinterpret_cast<KRProc>(&failingSlot));
    EXPECT_EQ(thrownBy([] { ProvideSlot(&s_partial, 2, nullptr); }), KRErrBadParam);
    EXPECT_EQ(thrownBy([] { ProvideSlot(&s_partial, 4, nullptr); }), KRErrBadParam);
    EXPECT_EQ(thrownBy([] { StartTables(); }), KRErrNotAvailable);
    EXPECT_NE(LastErrorText().find("Partial 1, 3."), std::string::npos) << LastErrorText();
    EXPECT_EQ(KRGetHFT(KRAtomFromString("Partial"), KRVersion(1, 0)), nullptr);
    DefineTable(&s_partial, "Partial", KRVersion(1, 0), 0);
    StartTables();
    EXPECT_NE(KRGetHFT(KRAtomFromString("Partial"), KRVersion(1, 0)), nullptr);
}

TEST(Tables, ServerOfAPlugIn) {
    static KRHFT s_table = nullptr;
    const auto provide = [](KRHFTServer, std::uint32_t version) {
        if (version == 7) KRRaise(KRErrBadField);
        return version <= KRVersion(1, 1) ? s_table : nullptr;
    };
    const KRHFTServer server = KRHFTServerNew("KernelTest", +provide);
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(KRHFTServerNew("KernelTest", +provide), nullptr);
    EXPECT_EQ(KRHFTServerNew("KernelSupport", +provide), nullptr);
    s_table = KRHFTNew(server, 3);
    const KRAtom name = KRAtomFromString("KernelTest");
    EXPECT_EQ(KRGetHFT(name, KRVersion(1, 0)), s_table);
    EXPECT_EQ(KRGetHFT(name, KRVersion(1, 2)), nullptr);
    EXPECT_EQ(Protect([&] { KRGetHFT(name, 7); }), KRErrBadField);
    EXPECT_EQ(Protect([] { s_table[3](); }), KRErrNotAvailable);
    EXPECT_EQ(Protect([] { KRHFTSetEntry(s_table, 0, s_table[1], 0); }), KRErrBadParam);
    EXPECT_EQ(Protect([] { KRHFTSetEntry(s_table, 4, s_table[1], 0); }), KRErrBadParam);
    EXPECT_EQ(Protect([] { KRHFTNew(nullptr, -1); }), KRErrBadParam);
}

TEST(Tables, ReplacedEntriesFormAChain) {
    const KRHFT table = KRHFTNew(nullptr, 1);
    const auto proc = [](int n) { return reinterpret_cast<KRProc>(static_cast<KRWord>(0x1000 + n)); };
    for (int n : {1, 2, 2, 3}) KRHFTSetEntry(table, 1, proc(n), 0);
    EXPECT_EQ(table[1], proc(3));
    EXPECT_EQ(KRHFTGetReplacedEntry(table, 1, proc(3)), proc(2));
    EXPECT_EQ(KRHFTGetReplacedEntry(table, 1, proc(2)), proc(1));
    EXPECT_EQ(KRHFTGetReplacedEntry(table, 1, proc(1)), nullptr);
    EXPECT_EQ(KRHFTGetReplacedEntry(table, 1, proc(9)), nullptr);
}

TEST(Callbacks, LiveUntilTheLastIsDestroyedOrTheOwnerGoes) {
    const auto proc = reinterpret_cast<KRProc>(&failingSlot);
    KRProc first = KRCallbackCreate(77, proc), second = KRCallbackCreate(77, proc);
    KRCallbackDestroy(first);
    KRWord owner = 0;
    EXPECT_TRUE(FindCallback(second, &owner));
    EXPECT_EQ(owner, 77u);
    DestroyCallbacksOf(77);
    EXPECT_FALSE(FindCallback(second));
    KRCallbackDestroy(second);
    EXPECT_EQ(Protect([] { KRCallbackCreate(77, nullptr); }), KRErrBadParam);
}

TEST(Atoms, KeysAndTextsAreOneAtomWithAStableAddress) {
    const KRAtom type = KRAtomFromString("KernelTestType");
    EXPECT_EQ(AtomFromKey("/KernelTestType"), type);
    EXPECT_EQ(AtomKey(type), "/KernelTestType");
    const char *const text = KRAtomGetString(type);
    for (int i = 0; i < 10000; ++i) AtomFromText("kernel-test-" + std::to_string(i));
    EXPECT_EQ(KRAtomGetString(type), text);
    EXPECT_EQ(KRAtomFromString("KernelTestType"), type);
    EXPECT_EQ(ExistingAtomFromKey("/kernel-test-9999"), AtomFromText("kernel-test-9999"));
    EXPECT_EQ(KRExistingAtomForString("kernel-test-10000"), KRAtomNull);
    EXPECT_STREQ(KRAtomGetString(KRAtomNull), "");
    // An empty name and a name that begins with a slash are names like any other.
    EXPECT_EQ(AtomFromKey("/"), KRAtomFromString(""));
    EXPECT_EQ(AtomKey(AtomFromText("/x")), "//x");
    EXPECT_EQ(Protect([] { KRAtomFromString(nullptr); }), KRErrBadParam);
}

TEST(AtomsDeathTest, GivenOutAllRaisesAndKeepsTheOld) {
    const auto fill = [] {
        const KRAtom known = KRAtomFromString("known");
        const KRErrorCode code = Protect([] {
            for (int i = 0; i < 70000; ++i) KRAtomFromString(("many" + std::to_string(i)).c_str());
        });
        const bool good = code == KRErrNoMemory && KRAtomFromString("known") == known &&
                          KRAtomFromString("many0") != KRAtomNull && std::strlen(KRAtomGetString(0xFFFE)) > 0 &&
                          KRExistingAtomForString("many69999") == KRAtomNull;
        std::_Exit(good ? 0 : 1);
    };
    EXPECT_EXIT(fill(), testing::ExitedWithCode(0), "");
}

TEST(Fixed, ArithmeticRoundsAndSaturates) {
    constexpr KRFixed most = 0x7FFFFFFF, least = INT32_MIN, one = KRFixedOne;
    EXPECT_EQ(KRFixedMul(3 * one / 2, 5 * one / 2), 15 * one / 4);
    EXPECT_EQ(KRFixedMul(1, 0x8000), 1);
    EXPECT_EQ(KRFixedMul(-1, 0x8000), -1);
    EXPECT_EQ(KRFixedMul(1, 0x7FFF), 0);
    EXPECT_EQ(KRFixedMul(least, least), most);
    EXPECT_EQ(KRFixedMul(least, most), least);
    EXPECT_EQ(KRFixedDiv(one, 3 * one), 0x5555);
    EXPECT_EQ(KRFixedDiv(-2 * one, 3 * one), -0xAAAB);
    EXPECT_EQ(KRFixedDiv(least, -1), most);
    EXPECT_EQ(KRFixedDiv(5, 0), most);
    EXPECT_EQ(KRFixedDiv(-5, 0), least);
    EXPECT_EQ(FixedFromDouble(1e300), most);
    EXPECT_EQ(FixedFromDouble(std::nan("")), 0);
}

TEST(Fixed, TextIsShortestRoundedAndFits) {
    EXPECT_EQ(fixedText(0xA8000, 32, 5), "10.5");
    EXPECT_EQ(fixedText(-0x4000, 32, 5), "-0.25");
    EXPECT_EQ(fixedText(0xC0000, 32, 4), "12");
    EXPECT_EQ(fixedText(-1, 32, 4), "0");
    EXPECT_EQ(fixedText(0x1FFFF, 32, 2), "2");
    EXPECT_EQ(fixedText(INT32_MIN, 32, 3), "-32768");
    EXPECT_EQ(fixedText(1, 32, 99), "0.0000152587890625");
    EXPECT_EQ(fixedText(0xA8000, 32, -1), "11");
    // No room for all decimals: they go one by one, each time rounded, and the digits go last.
    EXPECT_EQ(fixedText(0x1F333, 5, 4), "1.95");
    EXPECT_EQ(fixedText(0x1F333, 4, 4), "1.9");
    EXPECT_EQ(fixedText(0x1F333, 3, 4), "2");
    EXPECT_EQ(fixedText(KRFixedFromInt(12345), 4, 4), "123");
    EXPECT_EQ(fixedText(KRFixedOne, 1, 4), "");
}

TEST(Fixed, TextIsReadInNoLocale) {
    const std::pair<const char *, KRFixed> cases[] = {{" \t+1.5x", 0x18000},
                                                      {"-.25", -0x4000},
                                                      {"3.", 0x30000},
                                                      {"--5", 0},
                                                      {"1,5", 0x10000},
                                                      {"", 0},
                                                      {".", 0},
                                                      {"-", 0},
                                                      {"99999999999999999999", 0x7FFFFFFF},
                                                      {"-99999999999", INT32_MIN},
                                                      {"-32768", INT32_MIN},
                                                      {"0.99999999999999999999", 0x10000},
                                                      {"1e5", 0x10000}};
    for (const auto &[text, value] : cases) EXPECT_EQ(KRCStringToFixed(text), value) << text;
    for (KRFixed value : {1, -1, 0x12345, -0x7FFFFFFF})
        EXPECT_EQ(KRCStringToFixed(fixedText(value, 32, 16).c_str()), value);
}

TEST(Fixed, MatricesInPlaceAndBeyondRange) {
    constexpr KRFixed one = KRFixedOne, most = 0x7FFFFFFF;
    KRFixedMatrix rotateAndMove{0, one, -one, 0, 10 * one, 0};
    const KRFixedMatrix scale{2 * one, 0, 0, 3 * one, 0, one};
    KRFixedMatrixConcat(&rotateAndMove, &rotateAndMove, &scale);
    EXPECT_EQ(rotateAndMove.b, 3 * one);
    EXPECT_EQ(rotateAndMove.c, -2 * one);
    EXPECT_EQ(rotateAndMove.e, 20 * one);
    EXPECT_EQ(rotateAndMove.f, one);
    KRFixedRect rect{0, 2 * one, 5 * one, 0};
    KRFixedMatrixTransformRect(&rect, &rotateAndMove, &rect);
    EXPECT_EQ(rect.left, 16 * one);
    EXPECT_EQ(rect.right, 20 * one);
    EXPECT_EQ(rect.bottom, one);
    EXPECT_EQ(rect.top, 16 * one);
    const KRFixedMatrix huge{most, most, most, most, most, most};
    KRFixedMatrix result;
    KRFixedMatrixConcat(&result, &huge, &huge);
    EXPECT_EQ(result.a, most);
    EXPECT_EQ(result.f, most);
    KRFixedMatrix inverse;
    ASSERT_TRUE(FixedMatrixInvert(inverse, rotateAndMove));
    const KRFixedPoint back = FixedMatrixTransform(inverse, FixedMatrixTransform(rotateAndMove, {7 * one, -3 * one}));
    EXPECT_NEAR(back.h, 7 * one, 32);
    EXPECT_NEAR(back.v, -3 * one, 32);
    EXPECT_FALSE(FixedMatrixInvert(inverse, {one, one, one, one, 0, 0}));
}

TEST(Errors, TextsAreCutAndRegistered) {
    char text[64];
    EXPECT_STREQ(KRGetErrorString(0x12345678, text, sizeof text), "Error 0x12345678");
    EXPECT_STREQ(KRGetErrorString(KRErrNoMemory, text, 4), "Out");
    EXPECT_NE(std::strstr(KRGetErrorString(KRErrNotFDF, text, sizeof text), "%PDF"), nullptr);
    const KRErrorCode severe = KRRegisterErrorString(15, "severe"), mild = KRRegisterErrorString(2, "mild");
    EXPECT_STREQ(KRGetErrorString(severe, text, sizeof text), "severe");
    EXPECT_STREQ(KRGetErrorString(mild, text, sizeof text), "mild");
    EXPECT_EQ(static_cast<std::uint32_t>(severe) >> 28, 15u);
    EXPECT_EQ(Protect([] { KRRegisterErrorString(16, "x"); }), KRErrBadParam);
}

TEST(Memory, FaultsAreInjected) {
    const KRPathName path = KRPathFromPlatformPath("x");
    LimitAllocations(1);
    void *const block = KRmalloc(8);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(KRmalloc(8), nullptr);
    EXPECT_EQ(KRrealloc(block, 16), nullptr);
    EXPECT_EQ(Protect([&] { KRFileSysDisplayPath(KRGetDefaultFileSys(), path, 0); }), KRErrNoMemory);
    LimitAllocations(-1);
    KRFileSysReleasePath(KRGetDefaultFileSys(), path);
    void *const same = KRrealloc(block, 0);
    EXPECT_NE(same, nullptr);
    KRfree(same);
}

struct HostileWork {
    const char *name;
    void (*work)();
    KRErrorCode code;
    const char *sentence;
};

class Apart : public testing::TestWithParam<HostileWork> {};

TEST_P(Apart, EndsWithASentenceAndTheProcessGoesOn) {
    const HostileWork &row = GetParam();
#ifdef __SANITIZE_ADDRESS__
    const std::string name = row.name;
    if (name == "Grows" || name == "Overflows") GTEST_SKIP() << "the sanitizer has bounds and signals of its own";
#endif
    EXPECT_EQ(thrownBy([&] { RunApart("It", {/*seconds*/ 1, /*bytes*/ 64 << 20}, row.work); }), row.code);
    if (row.code != KRErrNone) {
        EXPECT_EQ(ErrorSentence(row.code), row.sentence);
    }
}

volatile std::uintptr_t s_sink;

INSTANTIATE_TEST_SUITE_P(Works, Apart,
                         testing::Values(HostileWork{"Calm", [] {}, KRErrNone, ""},
                                         HostileWork{"Raises",
                                                     [] {
                                                         throw HostError{KRErrBadPDF, "Why."};
                                                     },
                                                     KRErrBadPDF, "Why."},
                                         HostileWork{"RunsOn",
                                                     [] {
                                                         for (;;) s_sink = s_sink + 1;
                                                     },
                                                     KRErrNoMemory, "It takes longer than 1 s"},
                                         HostileWork{"Grows",
                                                     [] {
                                                         for (;;)
                                                             s_sink =
                                                                 reinterpret_cast<std::uintptr_t>(new char[1 << 20]);
                                                     },
                                                     KRErrNoMemory, "It takes more memory than 64 MB"},
                                         HostileWork{"Aborts", [] { std::raise(SIGABRT); }, KRErrNoMemory,
                                                     "It takes more memory than 64 MB"},
                                         HostileWork{"Overflows", [] { std::raise(SIGSEGV); }, KRErrBadPDF,
                                                     "It is more than the stack holds"}),
                         [](const auto &row) { return row.param.name; });
