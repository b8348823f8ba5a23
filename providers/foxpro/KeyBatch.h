// Changes of one tag that wait to be made in its tree: made in the order of their keys, many cost little more than one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "providers/foxpro/CdxTree.h"

namespace varnel::foxpro {

class KeyBatch {
public:
    /// findsHolders: whether FindHolder will be called.
    KeyBatch(std::uint16_t keyLength, bool findsHolders) : keyLength_(keyLength), findsHolders_(findsHolders) {}

    void Insert(KeyBytes key, std::uint32_t record) { Add(key, record, true); }
    void Remove(KeyBytes key, std::uint32_t record) { Add(key, record, false); }
    /// False when no change concerns the key. Else holder is the record that has it (keys are distinct), nothing when
    /// it was removed.
    bool FindHolder(KeyBytes key, std::optional<std::uint32_t>& holder) const;
    /// About, of memory.
    std::size_t Bytes() const;
    /// Makes the changes. When it throws all of them wait on; making one twice does no harm.
    void ApplyTo(CdxTree& tree, CdxFile& file);
    void Clear();

private:
    struct Change {
        std::uint32_t record;
        bool inserts;
    };

    void Add(KeyBytes key, std::uint32_t record, bool inserts);
    KeyBytes KeyOf(std::size_t change) const { return {keys_.data() + change * keyLength_, keyLength_}; }

    std::uint16_t keyLength_;
    bool findsHolders_;
    std::vector<std::uint8_t> keys_;
    std::vector<Change> changes_;
    std::unordered_map<std::string, std::optional<std::uint32_t>> holders_;
};

}  // namespace varnel::foxpro
