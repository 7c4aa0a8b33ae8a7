// The editor of name trees: order, limits, balance, and trees that are no trees.
// SPDX-License-Identifier: MIT
#include "objects/NameTree.h"

#include <map>
#include <random>
#include <string>
#include <vector>

#include "objects/LexUtil.h"
#include "objects/NameTreeNode.h"
#include "tests/forms/ModelFixture.h"

namespace {

using NameTrees = Model;

struct Key {
    explicit Key(const std::string &text) : name(EStrNewImpl(text.c_str(), EStrPDFDoc)) {}
    operator const EStr *() const {
        return name.get();
    }
    EStrPtr name;
};

void Add(const TestDoc &doc, const std::string &name, std::int32_t value, std::uint32_t flags = 0) {
    TSAddNameEntry(doc.lex, JavaScript_K, Key(name), LexNewInteger(doc.lex, /*indirect*/ false, value), flags);
}

void Remove(const TestDoc &doc, const std::string &name, bool updateLimits) {
    TSRemoveNameEntry(doc.lex, JavaScript_K, Key(name), updateLimits, TSNameRemove);
}

/** -1 when the name is not there. */
std::int32_t Find(const TestDoc &doc, const std::string &name) {
    const LexObj value = TSFindNameEntry(doc.lex, JavaScript_K, Key(name));
    return LexObjGetType(value) == LexInteger ? LexIntegerValue(value) : -1;
}

/** All entries as "name=value " in the order of the tree. */
std::string All(const TestDoc &doc) {
    std::string text;
    TSEnumNameTree(
        doc.lex, JavaScript_K,
        [](LexObj key, LexObj value, void *data) -> KRBool {
            auto &out = *static_cast<std::string *>(data);
            out += std::string(TSStringOf(key)) + "=" + std::to_string(LexIntegerValue(value)) + " ";
            return true;
        },
        &text);
    return text;
}

/** Two leaves below one inner node below the root. */
TestDoc ThreeLevels() {
    return TestDoc(
        PageObjects("/Names << /JavaScript << /Kids [4 0 R] >> >>",
                    {"<< /Kids [5 0 R 6 0 R] /Limits [(d) (s)] >>", "<< /Names [(d) 1 (f) 2] /Limits [(d) (f)] >>",
                     "<< /Names [(p) 3 (s) 4] /Limits [(p) (s)] >>"}));
}

TEST_F(NameTrees, NamesAreKeptSortedByBytesAndUnique) {
    const TestDoc doc(PageObjects(""));
    EXPECT_EQ(Find(doc, "a"), -1);
    EXPECT_EQ(LexObjGetType(doc.At("Names")), LexNull) << "reading makes nothing";
    for (const auto &[name, value] : std::map<std::string, int>{{"b", 1}, {"ab", 2}, {"\xE4", 3}, {"a", 4}}) {
        Add(doc, name, value);
    }
    Add(doc, "b", 9);
    EXPECT_EQ(All(doc), "a=4 ab=2 b=9 \xE4=3 ");
    const LexObj key = TSFindNameEntryByObj(doc.lex, JavaScript_K, TSFindNameEntry(doc.lex, JavaScript_K, Key("ab")));
    EXPECT_EQ(TSStringOf(key), "ab");
    EXPECT_EQ(LexObjGetType(TSFindNameEntryByObj(doc.lex, JavaScript_K, doc.At("Pages"))), LexNull);
}

TEST_F(NameTrees, ANameBelowAllOthersWidensTheWholePath) {
    const TestDoc doc = ThreeLevels();
    Add(doc, "a", 5);
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Limits")), "null");
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Limits")), "[(a) (s)]");
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Kids/0/Limits")), "[(a) (f)]");
    Add(doc, "z", 6);
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Kids/1/Limits")), "[(p) (z)]");
    Add(doc, "k", 7);
    EXPECT_EQ(All(doc), "a=5 d=1 f=2 k=7 p=3 s=4 z=6 ");
    EXPECT_EQ(Find(doc, "k"), 7);
    EXPECT_EQ(Find(doc, "g"), -1);
}

TEST_F(NameTrees, RemovalAtAnEdgeRecomputesLimitsOnRequest) {
    const TestDoc doc = ThreeLevels();
    Remove(doc, "s", /*updateLimits*/ false);
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Limits")), "[(d) (s)]");
    Remove(doc, "d", /*updateLimits*/ true);
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Limits")), "[(f) (p)]");
    EXPECT_EQ(Text(doc.At("Names/JavaScript/Kids/0/Kids/1/Limits")), "[(p) (p)]");
    Remove(doc, "f", /*updateLimits*/ true);
    EXPECT_EQ(LexArrayLength(doc.At("Names/JavaScript/Kids/0/Kids/0/Names")), 0);
    Remove(doc, "not there", /*updateLimits*/ true);
    EXPECT_EQ(All(doc), "p=3 ");
    Add(doc, "f", 8);
    EXPECT_EQ(Find(doc, "f"), 8);
}

TEST_F(NameTrees, ReplacedAndRemovedValuesAreDestroyedOnRequest) {
    const TestDoc doc(PageObjects(""));
    const auto put = [&](LexObj value, std::uint32_t flags) {
        TSAddNameEntry(doc.lex, JavaScript_K, Key("n"), value, flags);
    };
    const LexObj first = LexNewInteger(doc.lex, /*indirect*/ true, 1);
    const LexObj second = LexNewInteger(doc.lex, /*indirect*/ true, 2);
    put(first, 0);
    put(first, TSNameDestroyOld);
    EXPECT_EQ(LexObjGetType(first), LexInteger) << "put again, not replaced";
    put(second, TSNameDestroyOld);
    EXPECT_EQ(LexObjGetType(first), LexNull);
    TSRemoveNameEntry(doc.lex, JavaScript_K, Key("n"), /*updateLimits*/ true, TSNameRemoveDestroy);
    EXPECT_EQ(LexObjGetType(second), LexNull);
    EXPECT_EQ(All(doc), "");
}

TEST_F(NameTrees, RebuiltTreesAreBalancedAndHoldTheSame) {
    for (const int branching : {2, 3, 10}) {
        for (const int count : {1, 2, 3, 9, 10, 27, 28, 100}) {
            const TestDoc doc(PageObjects("/Names << /Dests << /Names [] >> >>"));
            std::string expected;
            for (int i = 0; i < count; ++i) {
                const std::string name = std::to_string(1000 + i);
                Add(doc, name, i);
                expected += name + "=" + std::to_string(i) + " ";
            }
            TSRegenerateNameTree(doc.lex, JavaScript_K, branching);
            EXPECT_EQ(All(doc), expected) << count << " by " << branching;
            for (int i = 0; i < count; ++i) EXPECT_EQ(Find(doc, std::to_string(1000 + i)), i);
            EXPECT_EQ(Text(doc.At("Names/JavaScript/Limits")), "null");
            const LexObj kids = doc.At("Names/JavaScript/Kids");
            EXPECT_EQ(LexObjGetType(kids), count > branching ? LexArray : LexNull);
            EXPECT_TRUE(count <= branching || LexArrayLength(kids) <= branching);
            for (std::string node = "Names/JavaScript"; LexObjGetType(doc.At(node)) == LexDict; node += "/Kids/0") {
                EXPECT_FALSE(LexDictKnown(doc.At(node), nKids_K)) << node;
            }
        }
    }
}

TEST_F(NameTrees, RebuildingKeepsDirectValuesAndTakesAnEmptiedNamesAway) {
    const TestDoc doc(PageObjects("/Names 4 0 R", {"<< /JavaScript << /Names [(a) << /JS (x) >> (b) [1 2]] >> >>"}));
    const LexObj oldNames = doc.At("Names");
    TSRegenerateNameTree(doc.lex, JavaScript_K, 2);
    EXPECT_EQ(LexObjGetType(oldNames), LexNull);
    const LexObj value = TSFindNameEntry(doc.lex, JavaScript_K, Key("a"));
    ASSERT_EQ(LexObjGetType(value), LexDict);
    EXPECT_EQ(TSStringOf(LexDictGet(value, JS_K)), "x");
    EXPECT_EQ(Protect([&] { TSRegenerateNameTree(doc.lex, JavaScript_K, 1); }), KRErrBadParam);
}

TEST_F(NameTrees, AgainstAModel) {
    const TestDoc doc(PageObjects(""));
    std::map<std::string, std::int32_t> model;
    std::mt19937 random(7);
    for (std::int32_t step = 0; step < 600; ++step) {
        std::string name(1 + random() % 3, 'a');
        for (char &c : name) c = static_cast<char>('a' + random() % 5);
        switch (random() % 4) {
        case 0:
            Remove(doc, name, random() % 2 == 0);
            model.erase(name);
            break;
        case 1:
            EXPECT_EQ(Find(doc, name), model.contains(name) ? model[name] : -1) << name;
            break;
        default:
            Add(doc, name, step);
            model[name] = step;
        }
        if (step % 97 == 96) TSRegenerateNameTree(doc.lex, JavaScript_K, 2 + step % 3);
    }
    std::string expected;
    for (const auto &[name, value] : model) expected += name + "=" + std::to_string(value) + " ";
    EXPECT_EQ(All(doc), expected);
}

TEST_F(NameTrees, TreesThatAreNoTreesEnd) {
    const TestDoc circle(
        PageObjects("/Names << /JavaScript 4 0 R >>",
                    {"<< /Kids [5 0 R 4 0 R 5 0 R] /Limits [(a) (z)] >>", "<< /Kids [4 0 R 6 0 R] /Limits [(a) (z)] >>",
                     "<< /Names [(m) 1] /Limits [(m) (m)] >>"}));
    EXPECT_EQ(All(circle), "m=1 ");
    EXPECT_EQ(Protect([&] { Add(circle, "q", 2); }), KRErrBadParam) << "a path without an end";
    EXPECT_EQ(Protect([&] { Find(circle, "q"); }), KRErrBadParam);
    TSRegenerateNameTree(circle.lex, JavaScript_K, 2);
    EXPECT_EQ(Find(circle, "m"), 1);

    const TestDoc junk(PageObjects("/Names << /JavaScript << /Kids [1 (x) null] /Names [(odd)] >> /Dests 3 >>"));
    Add(junk, "a", 1);
    EXPECT_EQ(Find(junk, "a"), 1);
    const TestDoc wrong(PageObjects("/Names [1 2]"));
    EXPECT_EQ(All(wrong), "");
    Add(wrong, "a", 1);
    EXPECT_EQ(All(wrong), "a=1 ");
}

} // namespace
