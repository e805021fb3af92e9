#include "platform/posix/systemPath.h"

#include <cerrno>
#include <cstdint>

namespace vellums::platform {
namespace {

void appendUtf8(std::string& out, char32_t c)
{
    const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

// Length of the well-formed sequence at the start of the bytes, 0 when there is none.
std::size_t sequenceLength(std::string_view bytes, char32_t& value)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned lead = at(0);
    std::size_t length = 0;
    char32_t smallest = 0;
    if (lead < 0x80) {
        value = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        length = 2, value = lead & 0x1F, smallest = 0x80;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        length = 3, value = lead & 0x0F, smallest = 0x800;
    } else if (lead >= 0xF0 && lead < 0xF5) {
        length = 4, value = lead & 0x07, smallest = 0x10000;
    }
    if (length == 0 || bytes.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (at(i) & 0x3F);
    }
    const bool fits = value >= smallest && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
    return fits ? length : 0;
}

} // namespace

std::string systemPath(std::u16string_view path)
{
    std::string out;
    out.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        char32_t c = path[i];
        const bool pair =
            c >= 0xD800 && c < 0xDC00 && i + 1 < path.size() && path[i + 1] >= 0xDC00 && path[i + 1] < 0xE000;
        if (pair)
            c = 0x10000 + ((c - 0xD800) << 10) + (path[++i] - 0xDC00u);
        else if (c >= 0xDC80 && c <= 0xDCFF) {
            out.push_back(static_cast<char>(c - 0xDC00));
            continue;
        } else if (c == u'\\')
            c = u'/';
        appendUtf8(out, c);
    }
    return out;
}

std::u16string pathFromBytes(std::string_view bytes)
{
    std::u16string out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        char32_t c = 0;
        std::size_t length = sequenceLength(bytes, c);
        if (length == 0) {
            c = 0xDC00u + static_cast<unsigned char>(bytes[0]);
            length = 1;
        }
        if (c >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            c = 0xDC00 + ((c - 0x10000) & 0x3FF);
        }
        out.push_back(static_cast<char16_t>(c));
        bytes.remove_prefix(length);
    }
    return out;
}

FileFault faultOfErrno(int code)
{
    switch (code) {
    case ENOENT:
        return FileFault::NotFound;
    case ENOTDIR:
        return FileFault::FolderNotFound;
    case EACCES:
    case EPERM:
    case EISDIR:
        return FileFault::Denied;
    case EROFS:
        return FileFault::ReadOnly;
    case EBUSY:
    case ETXTBSY:
        return FileFault::InUse;
    case EEXIST:
        return FileFault::Exists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return FileFault::DiskFull;
    default:
        return FileFault::Failed;
    }
}

} // namespace vellums::platform
