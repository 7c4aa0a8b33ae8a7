// The host's name trees: order and balance of what is written, and trees that others left in disorder.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DocModelHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "doc/Document.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Objects.h"

namespace {

class NameTreeTest : public testing::Test {
protected:
    ~NameTreeTest() override {
        if (doc != nullptr) DMDocClose(doc);
    }
    void openWith(const std::string &catalogEntries, const std::vector<std::string> &more = {}) {
        std::vector<std::string> objects = {"<< /Type /Catalog " + catalogEntries + " >>"};
        objects.insert(objects.end(), more.begin(), more.end());
        doc = jackdaw::OpenDocFromBytes(PdfText(objects), nullptr);
        tree = DMDocGetNameTree(doc, Atom("Icons"));
    }
    void put(const std::string &key, std::int32_t value) {
        DMNameTreePut(tree, key.data(), static_cast<std::int32_t>(key.size()),
                      LexNewInteger(DMDocGetLexDoc(doc), 0, value));
    }
    /** -1 when the key is not there. */
    std::int32_t get(const std::string &key) const {
        LexObj value;
        if (!DMNameTreeGet(tree, key.data(), static_cast<std::int32_t>(key.size()), &value)) return -1;
        return LexIntegerValue(value);
    }
    void remove(const std::string &key) {
        DMNameTreeRemove(tree, key.data(), static_cast<std::int32_t>(key.size()));
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        const auto collect = [](LexObj key, LexObj, void *data) -> KRBool {
            static_cast<std::vector<std::string> *>(data)->push_back(Text(key));
            return 1;
        };
        EXPECT_TRUE(DMNameTreeEnum(tree, collect, &all));
        return all;
    }
    LexObj root() const {
        return {tree.node, tree.slot};
    }

    DMDoc doc = nullptr;
    DMNameTree tree{};
};

struct Range {
    std::string low, high;
    int depth;
};

/** Checks sizes and limits of a node and of all below it. */
Range checkNode(LexObj node, bool isRoot) {
    Range range{"", "", 1};
    const LexObj kids = LexDictGet(node, Atom("Kids"));
    if (LexObjGetType(kids) == LexArray) {
        const std::int32_t count = LexArrayLength(kids);
        EXPECT_LE(count, 64);
        for (std::int32_t i = 0; i < count; ++i) {
            const Range kid = checkNode(LexArrayGet(kids, i), /*isRoot*/ false);
            if (i == 0) range.low = kid.low;
            range.high = kid.high;
            range.depth = std::max(range.depth, kid.depth + 1);
        }
    } else {
        const LexObj names = LexDictGet(node, Atom("Names"));
        const std::int32_t length = LexArrayLength(names);
        EXPECT_LE(length, 2 * 64);
        EXPECT_GE(length, 2);
        range.low = Text(LexArrayGet(names, 0));
        range.high = Text(LexArrayGet(names, length - 2));
    }
    const LexObj limits = LexDictGet(node, Atom("Limits"));
    EXPECT_EQ(LexObjGetType(limits), isRoot ? LexNull : LexArray);
    if (!isRoot) {
        EXPECT_EQ(Text(LexArrayGet(limits, 0)), range.low);
        EXPECT_EQ(Text(LexArrayGet(limits, 1)), range.high);
    }
    return range;
}

TEST_F(NameTreeTest, ManyNamesStaySortedAndBalanced) {
    openWith("");
    EXPECT_FALSE(DMNameTreeIsValid(tree));
    EXPECT_TRUE(names().empty()) << "a tree that is absent counts as done";
    tree = DMDocCreateNameTree(doc, Atom("Icons"));
    std::map<std::string, std::int32_t> expected;
    std::uint32_t random = 7;
    for (int i = 0; i < 5000; ++i) {
        random = random * 1664525u + 1013904223u;
        const std::string key = "n" + std::to_string(random >> 17);
        expected[key] = i;
        put(key, i);
    }
    std::vector<std::string> sorted;
    for (const auto &[key, value] : expected) {
        sorted.push_back(key);
        EXPECT_EQ(get(key), value);
    }
    EXPECT_EQ(names(), sorted);
    EXPECT_GE(checkNode(root(), /*isRoot*/ true).depth, 3);
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i % 3 != 0) remove(sorted[i]);
    }
    EXPECT_EQ(names().size(), (sorted.size() + 2) / 3);
    checkNode(root(), /*isRoot*/ true);
    for (std::size_t i = 0; i < sorted.size(); i += 3) remove(sorted[i]);
    remove("never there");
    EXPECT_EQ(LexObjGetType(LexDictGet(root(), Atom("Kids"))), LexNull);
    EXPECT_EQ(LexArrayLength(LexDictGet(root(), Atom("Names"))), 0);
    put("again", 1);
    EXPECT_EQ(get("again"), 1);
}

TEST_F(NameTreeTest, KeysAreBytesInByteOrder) {
    openWith("/Names << /Icons << /Names [] >> >>");
    const std::string withZero("a\0b", 3);
    for (const std::string &key : {std::string("\xFF"), withZero, std::string("a"), std::string(), std::string("z")}) {
        put(key, static_cast<std::int32_t>(key.size()));
    }
    EXPECT_EQ(names(), (std::vector<std::string>{"", "a", withZero, "z", "\xFF"}));
    EXPECT_EQ(get(withZero), 3);
    put("a", 77);
    EXPECT_EQ(get("a"), 77);
    EXPECT_EQ(names().size(), 5u);
    EXPECT_EQ(Protect([&] { DMNameTreePut(tree, "n", 1, LexNullObj); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMNameTreePut(tree, "n", -1, root()); }), KRErrBadParam);
    EXPECT_EQ(names().size(), 5u);
}

TEST_F(NameTreeTest, AnUnsortedTreeIsReadAsItIsAndPutInOrderByTheFirstChange) {
    openWith("/Names << /Icons 2 0 R >>",
             {"<< /Kids [3 0 R 4 0 R 2 0 R 3 0 R null 9 (x) << /Names [(b) 5 /n 6 (odd)] >>] >>",
              "<< /Limits [(y) (z)] /Names [(m) 1 (c) 2 (m) 3] >>", "<< /Kids 7 /Names [(k) 4] /Limits (q) >>"});
    EXPECT_EQ(names(), (std::vector<std::string>{"m", "c", "m", "k", "b"}));
    EXPECT_EQ(get("c"), 2);
    EXPECT_EQ(get("b"), 5);
    EXPECT_EQ(get("absent"), -1);
    put("d", 9);
    EXPECT_EQ(names(), (std::vector<std::string>{"b", "c", "d", "k", "m"}));
    EXPECT_EQ(get("m"), 1) << "of equal keys the first stays";
    remove("c");
    EXPECT_EQ(names(), (std::vector<std::string>{"b", "d", "k", "m"}));
}

TEST_F(NameTreeTest, OneGreatForeignLeafIsSplitAsItGrows) {
    std::string pairs;
    for (int i = 1000; i < 1200; ++i) pairs += "(" + std::to_string(i) + ") " + std::to_string(i) + " ";
    openWith("/Names << /Icons << /Names [" + pairs + "] >> >>");
    put("1100a", 1);
    EXPECT_EQ(names().size(), 201u);
    EXPECT_EQ(get("1100"), 1100);
    EXPECT_EQ(get("1199"), 1199);
    EXPECT_EQ(LexArrayLength(LexDictGet(root(), Atom("Kids"))), 2);
}

TEST_F(NameTreeTest, LoopsAndDepthEnd) {
    std::vector<std::string> chain;
    for (int i = 2; i < 3000; ++i) chain.push_back("<< /Kids [" + std::to_string(i + 1) + " 0 R] /Limits [(a) (z)] >>");
    chain.push_back("<< /Names [(m) 1] /Limits [(m) (m)] >>");
    openWith("/Names << /Icons 2 0 R >>", chain);
    EXPECT_EQ(get("m"), 1);
    put("n", 2);
    EXPECT_EQ(names(), (std::vector<std::string>{"m", "n"}));
    DMDocClose(doc);
    openWith("/Names << /Icons 2 0 R >>", {"<< /Kids [2 0 R] >>"});
    EXPECT_EQ(get("m"), -1);
    put("m", 3);
    EXPECT_EQ(get("m"), 3);
}

TEST_F(NameTreeTest, EnumerationSurvivesChangesAndPassesRaisesOn) {
    openWith("/Names << /Icons << /Names [(a) 1 (b) 9 0 R (c) 3] >> >>");
    const auto removeAll = [](LexObj key, LexObj, void *data) -> KRBool {
        const std::string name = Text(key);
        DMNameTreeRemove(*static_cast<DMNameTree *>(data), name.data(), static_cast<std::int32_t>(name.size()));
        return 1;
    };
    const auto stop = [](LexObj, LexObj, void *data) -> KRBool {
        ++*static_cast<int *>(data);
        return 0;
    };
    const auto raise = [](LexObj, LexObj, void *) -> KRBool { KRRaise(KRErrBadField); };
    int calls = 0;
    EXPECT_FALSE(DMNameTreeEnum(tree, stop, &calls));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(Protect([&] { DMNameTreeEnum(tree, raise, nullptr); }), KRErrBadField);
    EXPECT_TRUE(DMNameTreeEnum(tree, removeAll, &tree)) << "also the name whose value is gone";
    EXPECT_TRUE(names().empty());
}

} // namespace
