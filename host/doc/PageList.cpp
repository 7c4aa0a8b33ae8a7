// The walk of the page tree, without recursion: files nest as deep as they like.
// SPDX-License-Identifier: MIT
#include "doc/PageList.h"

#include <unordered_set>

#include "doc/Keys.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

struct OpenNode {
    LexObj node;
    LexObj kids;
    std::int32_t next = 0;
    std::int32_t length = 0;
    std::size_t leavesBefore = 0;
};

struct Walk {
    PageList list;
    std::vector<OpenNode> open;
    std::unordered_set<KRWord> met;

    LexObj innermost() const {
        return open.empty() ? lex::NullObj : open.back().node;
    }

    void enter(LexObj obj) {
        if (!lex::IsDict(obj) || !met.insert(obj.node).second) return;
        const LexObj kids = lex::DictGet(obj, Keys().Kids);
        if (lex::IsArray(kids)) {
            list.nodes[obj.node] = {obj, innermost(), 0};
            open.push_back({obj, kids, 0, lex::ArrayLength(kids), list.leaves.size()});
            return;
        }
        const KRAtom type = lex::NameOrNone(lex::DictGet(obj, Keys().Type));
        if (type == Keys().Pages || type == Keys().Catalog) return;
        if (!lex::IsIndirect(obj)) lex::EnsureIndirect(obj);
        list.indexOf[obj.node] = static_cast<std::int32_t>(list.leaves.size());
        list.leaves.push_back({obj, innermost()});
    }

    void leave() {
        const OpenNode &done = open.back();
        list.nodes[done.node.node].leaves = static_cast<std::int32_t>(list.leaves.size() - done.leavesBefore);
        open.pop_back();
    }

    void run(LexObj root) {
        enter(root);
        while (!open.empty()) {
            OpenNode &node = open.back();
            if (node.next == node.length)
                leave();
            else
                enter(lex::ArrayGet(node.kids, node.next++));
        }
    }
};

} // namespace

PageList ReadPageList(LexDoc lex) {
    Walk walk;
    const LexObj catalog = lex::RootOf(lex);
    if (lex::IsDict(catalog)) walk.run(lex::DictGet(catalog, Keys().Pages));
    return std::move(walk.list);
}

} // namespace jackdaw
