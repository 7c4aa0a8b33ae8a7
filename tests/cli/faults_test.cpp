// The machine fails while a form is opened, filled and saved over itself: a read, a write, memory, a signal. Either
// nothing was done and the file is as it was, or all was; nothing else lies about afterwards.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/** As FaultShim.c has them. */
const Strings s_calls = {"malloc", "open",  "stat",  "fstat",  "access", "readlink", "read",
                         "pread",  "write", "fsync", "fchmod", "linkat", "rename",   "close"};

/** A folder with a form of a hundred thousand bytes, and a folder for temporary files beside it. */
class Place {
public:
    Place() {
        Strings fields;
        for (int i = 0; i < 300; ++i) {
            const std::string name = "f" + std::to_string(i);
            fields.push_back("/T (" + name + ") /FT /Tx /TU (" + std::string(150, 'u') + ") /V (Value of " + name +
                             ")");
        }
        original_ = PdfText(FormObjects(fields, "/DA (/Helv 10 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype "
                                                "/Type1 /BaseFont /Helvetica >> >> >>"));
        form_ = TempFile("form.pdf", original_);
        temporaries_ = fs::path(TempFile("unused", "")).parent_path();
        fs::remove(temporaries_ / "unused");
    }
    void restore() const {
        fs::remove(form_);
        std::ofstream(form_, std::ios::binary) << original_;
    }
    /** The fill, under the shim. `variables` are set for it. */
    Ran fill(Strings variables, const std::string &output) const {
        Strings command = {"env", "TMPDIR=" + temporaries_.string(), "LC_ALL=C.UTF-8",
                           "ASAN_OPTIONS=verify_asan_link_order=0:detect_leaks=0",
                           std::string("LD_PRELOAD=") + TEST_FAULT_SHIM};
        command.insert(command.end(), variables.begin(), variables.end());
        for (const char *word : {TEST_JACKDAW, "fill", form_.c_str(), "--set", "f7=Zo\xc3\xab \xe2\x82\xac", "--set",
                                 "f299=new", "-o", output.c_str()})
            command.push_back(word);
        return RunProgram(command);
    }
    Ran fillOverItself(Strings variables) const {
        return fill(std::move(variables), form_);
    }
    bool isUntouched() const {
        return ReadAll(form_) == original_;
    }
    std::string content() const {
        return withoutId(ReadAll(form_));
    }
    /** The second part of a file's identifier is random. */
    static std::string withoutId(const std::string &pdf) {
        return std::regex_replace(pdf, std::regex("/ID ?\\[[^\\]]*\\]"), "");
    }
    /** Names of what a run left beside the form or in the folder of temporary files. */
    Strings leftovers() const {
        Strings names;
        for (const fs::path &folder : {fs::path(form_).parent_path(), temporaries_}) {
            for (const auto &entry : fs::directory_iterator(folder)) {
                if (entry.path() != form_) names.push_back(entry.path());
            }
        }
        return names;
    }

private:
    std::string original_, form_;
    fs::path temporaries_;
};

/** What the fill makes of the form when nothing fails, and how often it makes each call. */
struct Reference {
    std::string content, piped;
    std::map<std::string, long> counts;
};

Reference MakeReference(const Strings &variables) {
    const Place place;
    const std::string counts = TempFile("counts", std::string(sizeof(long) * s_calls.size(), '\0'));
    Strings counting = variables;
    counting.push_back("FAULT_COUNTS=" + counts);
    const Ran ran = place.fillOverItself(counting);
    EXPECT_EQ(ran.exit, 0) << ran;
    const std::string bytes = ReadAll(counts);
    Reference reference;
    for (std::size_t i = 0; i < s_calls.size(); ++i)
        std::memcpy(&reference.counts[s_calls[i]], bytes.data() + i * sizeof(long), sizeof(long));
    reference.content = place.content();
    place.restore();
    reference.piped = Place::withoutId(place.fill(variables, "-").out);
    return reference;
}

/** One line at least, and nothing else, for whoever was not given what was asked for. */
void ExpectLines(const Ran &ran) {
    EXPECT_EQ(ran.exit == 0, ran.err.empty()) << ran;
    EXPECT_TRUE(ran.err.empty() || ran.err.rfind("jackdaw: ", 0) == 0) << ran;
}

struct Fault {
    const char *call;
    /** As the shim reads it. */
    std::string what;
    /** A call that is made again does no harm. */
    bool isPassing = false;
    /** Folders in which files without a name cannot be made. */
    bool needsNames = false;
    /** Points that are tried at most, or few more. */
    long samples = 6;
};

std::ostream &operator<<(std::ostream &stream, const Fault &fault) {
    return stream << fault.call << " " << fault.what << (fault.needsNames ? " with names" : "");
}

class FaultAtEachCall : public testing::TestWithParam<Fault> {};

TEST_P(FaultAtEachCall, LeavesTheFormAsItWasOrWholly) {
    const Fault &fault = GetParam();
    Strings variables;
    if (fault.needsNames) variables.push_back("FAULT_NO_TMPFILE=1");
    const Reference reference = MakeReference(variables);
    const long count = reference.counts.at(fault.call);
    ASSERT_GT(count, 0) << "the shim did not see a call";
    const long step = std::max(1L, count / fault.samples);
    const Place place;
    variables.emplace_back();
    for (long number = 1; number <= count; number += step) {
        variables.back() = "FAULT=" + std::string(fault.call) + ":" + std::to_string(number) + ":" + fault.what;
        SCOPED_TRACE(variables.back());
        place.restore();
        const Ran ran = place.fillOverItself(variables);
        const bool isWhole = place.content() == reference.content;
        EXPECT_TRUE(isWhole || (ran.exit == 2 && place.isUntouched())) << ran;
        EXPECT_TRUE(ran.exit == 0 || (ran.exit == 2 && !fault.isPassing)) << ran;
        EXPECT_EQ(place.leftovers(), Strings());
        ExpectLines(ran);
    }
}

std::vector<Fault> Faults() {
    const std::string passing = std::to_string(EINTR), notReady = std::to_string(EAGAIN);
    std::vector<Fault> faults;
    for (const char *call : {"pread", "open", "stat", "fstat", "access", "readlink", "fchmod", "linkat", "rename",
                             "fsync", "write", "close"}) {
        const std::string reason = std::to_string(std::strcmp(call, "write") == 0 ? ENOSPC : EIO);
        faults.push_back({call, reason});
        faults.push_back({call, reason + "+"});
    }
    for (const char *call : {"write", "fsync", "rename", "close"})
        faults.push_back({call, std::to_string(EIO), /*isPassing*/ false, /*needsNames*/ true});
    for (const char *what : {"end", "end+"}) faults.push_back({"pread", what});
    for (const char *call : {"pread", "write"}) {
        for (const std::string &what : {passing, notReady, std::string("short+")})
            faults.push_back({call, what, /*isPassing*/ true});
    }
    for (const char *call : {"open", "fsync", "rename", "close"})
        faults.push_back({call, passing, /*isPassing*/ true, /*needsNames*/ true});
#ifndef __SANITIZE_ADDRESS__
    for (const char *end : {"", "+"}) {
        Fault fault{"malloc", std::to_string(ENOMEM) + end};
        fault.samples = 60;
        faults.push_back(fault);
    }
#endif
    return faults;
}

INSTANTIATE_TEST_SUITE_P(Machine, FaultAtEachCall, testing::ValuesIn(Faults()));

class SignalAtEachCall : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Signal, SignalAtEachCall, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ));

// The one of a file that is too large is for the write to tell, and no end.
TEST_P(SignalAtEachCall, LeavesNoFileOfItsOwn) {
    const std::string signal = "signal" + std::to_string(GetParam());
    for (const bool needsNames : {false, true}) {
        const Strings variables = needsNames ? Strings{"FAULT_NO_TMPFILE=1"} : Strings();
        const Reference reference = MakeReference(variables);
        const Place place;
        for (const std::string call : {"write", "fsync", "fchmod", "linkat", "rename"}) {
            for (const bool piped : {false, true}) {
                if (needsNames && call == "linkat") continue;
                if (piped && call != "write") continue;
                Strings all = variables;
                all.push_back("FAULT=" + call + ":1:" + signal);
                SCOPED_TRACE(all.back() + (piped ? " piped" : "") + (needsNames ? " with names" : ""));
                place.restore();
                const Ran ran = piped ? place.fill(all, "-") : place.fillOverItself(all);
                const bool ends = GetParam() != SIGXFSZ;
                EXPECT_EQ(ran.signal, ends ? GetParam() : 0) << ran;
                EXPECT_TRUE(ends || piped || place.content() == reference.content);
                EXPECT_TRUE(ends || !piped || Place::withoutId(ran.out) == reference.piped);
                EXPECT_TRUE(!(ends || piped) || place.isUntouched());
                EXPECT_EQ(place.leftovers(), Strings());
            }
        }
    }
}

} // namespace
