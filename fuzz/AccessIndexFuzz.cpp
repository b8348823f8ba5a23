// An index tree with bytes changed at will, then searched and changed. The input: u8 number of changes, each of them
// u8 page, u16 offset, u8 new byte; then u8 what to do and u16 which entry, again and again; all of it also as a text.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/Error.h"
#include "providers/access/IndexKey.h"
#include "providers/access/IndexTree.h"
#include "providers/access/IndexWalk.h"
#include "providers/access/TextKey.h"
#include "providers/access/VerifyIndexTree.h"
#include "tests/providers_access/AllocatedPages.h"

using namespace varnel;
using namespace varnel::access;

namespace {

constexpr PageNumber kOwner = 7;

std::string Entry(unsigned k) {
    std::string entry(20 + k % 90, static_cast<char>('A' + k / 40 % 40));
    entry += std::to_string(k);
    AppendRowId(entry, {k + 1, static_cast<std::uint8_t>(k)});
    return entry;
}

struct Tree {
    AllocatedPages pages{kJet3Layout};
    RealIndex index;
    Tree() {
        Step step(pages);
        index.root = pages.Take({});
        IndexImage().Write(pages.Change(index.root), IndexShapeOf(kJet3Layout), kOwner);
        IndexTree tree(pages, pages, kOwner, index);
        for (unsigned k = 0; k < 1600; k += 2) tree.Insert(Entry(k));
        step.Keep();
    }
};

class Input {
public:
    explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    bool Ended() const { return bytes_.empty(); }
    unsigned U8() {
        if (bytes_.empty()) return 0;
        const unsigned byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }
    unsigned U16() {
        const unsigned low = U8();
        return low | U8() << 8;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

void Damage(AllocatedPages& pages, Input& input) {
    for (unsigned left = input.U8(); left > 0 && !input.Ended(); --left) {
        const PageNumber page = input.U8() % pages.PageCount();
        const std::size_t offset = input.U16() % kJet3Layout.pageSize;
        pages.At(page)[offset] = static_cast<std::uint8_t>(input.U8());
    }
}

void Use(IndexTree& tree, AllocatedPages& pages, unsigned what, unsigned k) {
    Step step(pages);
    try {
        switch (what % 4) {
            case 0:
                tree.Insert(Entry(k));
                break;
            case 1:
                tree.Remove(Entry(k));
                break;
            case 2:
                tree.Find(KeyOf(Entry(k)));
                break;
            default:
                tree.Has(Entry(k));
                break;
        }
        step.Keep();
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
        tree.Forget();
    }
}

void WalkAll(AllocatedPages& pages, PageNumber root) {
    VerifyIndexTree(
        pages, kOwner, root, [](PageNumber, const std::string&) {}, [](std::string_view) {});
    try {
        IndexWalk walk(pages, kOwner, root);
        std::string entry;
        while (walk.Next(entry)) {
        }
    } catch (const Error&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096) return 0;  // keep one run short
    static const Tree kSound;
    AllocatedPages pages = kSound.pages;
    Input input({data, size});
    Damage(pages, input);
    IndexTree tree(pages, pages, kOwner, kSound.index);
    while (!input.Ended()) {
        const unsigned what = input.U8();
        Use(tree, pages, what, input.U16());
    }
    WalkAll(pages, kSound.index.root);

    std::string key;
    Column text;
    AppendStoredKey(key, {data, size}, text, size % 2 == 0);
    AppendTextKey(key, std::string_view(reinterpret_cast<const char*>(data), size), true);
    return 0;
}
