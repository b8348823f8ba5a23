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
    /// findsHolders: whether Holder will be asked.
    KeyBatch(std::uint16_t keyLength, bool findsHolders) : keyLength_(keyLength), findsHolders_(findsHolders) {}

    void Insert(KeyBytes key, std::uint32_t record) { Add(key, record, true); }
    void Remove(KeyBytes key, std::uint32_t record) { Add(key, record, false); }
    /// The record that has the key of a tag whose keys are distinct: outer nothing when the batch does not know, inner
    /// nothing when it has been removed.
    std::optional<std::optional<std::uint32_t>> Holder(KeyBytes key) const;
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
