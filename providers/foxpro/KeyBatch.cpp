#include "providers/foxpro/KeyBatch.h"

#include <algorithm>
#include <numeric>

namespace varnel::foxpro {

void KeyBatch::Add(KeyBytes key, std::uint32_t record, bool inserts) {
    keys_.insert(keys_.end(), key.begin(), key.end());
    changes_.push_back({record, inserts});
    if (!findsHolders_) return;
    auto& holder = holders_[std::string(key.begin(), key.end())];
    holder = inserts ? std::optional(record) : std::nullopt;
}

bool KeyBatch::FindHolder(KeyBytes key, std::optional<std::uint32_t>& holder) const {
    const auto found = holders_.find(std::string(key.begin(), key.end()));
    if (found == holders_.end()) return false;
    holder = found->second;
    return true;
}

std::size_t KeyBatch::Bytes() const {
    constexpr std::size_t kBytesOfHolder = 100;
    return changes_.size() * (keyLength_ + sizeof(Change) + 4) + holders_.size() * kBytesOfHolder;
}

void KeyBatch::ApplyTo(CdxTree& tree, CdxFile& file) {
    std::vector<std::uint32_t> order(changes_.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
        const int entries = CompareEntries(KeyOf(a), changes_[a].record, KeyOf(b), changes_[b].record);
        return entries != 0 ? entries < 0 : a < b;  // of one entry the last change counts
    });
    for (const std::uint32_t at : order) {
        const Change& change = changes_[at];
        change.inserts ? tree.Insert(KeyOf(at), change.record)
                       : static_cast<void>(tree.Remove(KeyOf(at), change.record));
        file.Trim();
    }
    Clear();
}

void KeyBatch::Clear() {
    keys_.clear();
    changes_.clear();
    holders_.clear();
}

}  // namespace varnel::foxpro
