#include "providers/foxpro/KeptCopy.h"

#include <cerrno>

#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel::foxpro {
namespace {

[[noreturn]] void ThrowTemporary() {
    throw Error(ErrorKind::Io, "", FileErrorText(errno, "temporary file"));
}

}  // namespace

KeptCopy::KeptCopy() : file_(std::tmpfile()) {
    if (!file_) ThrowTemporary();
}

void KeptCopy::Add(std::span<const std::uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) < bytes.size()) ThrowTemporary();
    size_ += bytes.size();
}

std::size_t KeptCopy::Read(std::uint64_t offset, std::span<std::uint8_t> into) const {
    if (std::fseek(file_.get(), static_cast<long>(offset), SEEK_SET) != 0) ThrowTemporary();
    const std::size_t got = std::fread(into.data(), 1, into.size(), file_.get());
    if (std::ferror(file_.get()) != 0) ThrowTemporary();
    return got;
}

}  // namespace varnel::foxpro
