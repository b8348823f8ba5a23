#include "providers/foxpro/KeySorter.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <numeric>
#include <string>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kBlockEntries = 512;

[[noreturn]] void Broken(const char* what) {
    throw Error(ErrorKind::Io, "", std::string("The temporary file that sorts index keys cannot be ") + what + ".");
}

}  // namespace

KeySorter::KeySorter(std::uint16_t keyLength, std::size_t memoryBytes)
    : keyLength_(keyLength), mostHeld_(std::max<std::size_t>(2, memoryBytes / (keyLength + std::size_t{8}))) {}

void KeySorter::Add(KeyBytes key, std::uint32_t record) {
    assert(!reading_ && key.size() == keyLength_);
    if (held_.size() == mostHeld_ * EntryBytes()) SpillHeld();
    held_.insert(held_.end(), key.begin(), key.end());
    for (int shift = 24; shift >= 0; shift -= 8) held_.push_back(static_cast<std::uint8_t>(record >> shift));
    greatest_ = std::max(greatest_, record);
}

void KeySorter::SortHeld() {
    order_.resize(held_.size() / EntryBytes());
    std::iota(order_.begin(), order_.end(), 0U);
    const std::uint8_t* base = held_.data();
    const std::size_t bytes = EntryBytes();
    std::sort(order_.begin(), order_.end(), [base, bytes](std::uint32_t a, std::uint32_t b) {
        return std::memcmp(base + a * bytes, base + b * bytes, bytes) < 0;
    });
}

void KeySorter::SpillHeld() {
    if (!file_) file_.reset(std::tmpfile());
    if (!file_) Broken("made");
    SortHeld();
    for (const std::uint32_t k : order_) {
        if (std::fwrite(held_.data() + k * EntryBytes(), EntryBytes(), 1, file_.get()) != 1) Broken("written");
    }
    Run run;
    run.next = spilled_;
    run.end = spilled_ += held_.size();
    runs_.push_back(std::move(run));
    held_.clear();
}

void KeySorter::BeginReading() {
    reading_ = true;
    if (runs_.empty()) return SortHeld();
    SpillHeld();
    held_ = {};
    order_ = {};
    if (std::fflush(file_.get()) != 0) Broken("written");
    const auto after = [this](std::size_t a, std::size_t b) { return IsAfter(a, b); };
    for (std::size_t k = 0; k < runs_.size(); ++k) {
        if (!Refill(runs_[k])) continue;
        heap_.push_back(k);
        std::push_heap(heap_.begin(), heap_.end(), after);
    }
}

bool KeySorter::Refill(Run& run) {
    const std::size_t count = std::min<std::uint64_t>(run.end - run.next, kBlockEntries * EntryBytes());
    run.block.resize(count);
    run.at = 0;
    if (count == 0) return false;
    if (std::fseek(file_.get(), static_cast<long>(run.next), SEEK_SET) != 0) Broken("read");
    if (std::fread(run.block.data(), 1, count, file_.get()) != count) Broken("read");
    run.next += count;
    return true;
}

bool KeySorter::IsAfter(std::size_t runA, std::size_t runB) const {
    return std::memcmp(EntryOf(runs_[runA]).data(), EntryOf(runs_[runB]).data(), EntryBytes()) > 0;
}

bool KeySorter::Next() {
    if (!reading_) {
        BeginReading();
        return runs_.empty() ? !order_.empty() : !heap_.empty();
    }
    if (runs_.empty()) return ++next_ < order_.size();
    const auto after = [this](std::size_t a, std::size_t b) { return IsAfter(a, b); };
    std::pop_heap(heap_.begin(), heap_.end(), after);
    Run& run = runs_[heap_.back()];
    run.at += EntryBytes();
    if (run.at == run.block.size() && !Refill(run)) {
        heap_.pop_back();
    } else {
        std::push_heap(heap_.begin(), heap_.end(), after);
    }
    return !heap_.empty();
}

KeyBytes KeySorter::Key() const {
    if (runs_.empty()) return {held_.data() + order_[next_] * EntryBytes(), keyLength_};
    return EntryOf(runs_[heap_.front()]).first(keyLength_);
}

std::uint32_t KeySorter::Record() const {
    const std::uint8_t* bytes = Key().data() + keyLength_;
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

}  // namespace varnel::foxpro
