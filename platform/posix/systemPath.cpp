// Names are bytes to a POSIX system, and need not be UTF-8. A byte that fits no sequence travels as a lone
// low surrogate, U+DC00 plus the byte, which no well-formed text contains; on the way back it becomes the
// byte again. So every file that can be listed can be opened.
#include "platform/posix/systemPath.h"

#include "text/unicode.h"

#include <cerrno>

namespace vellums::platform {
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
        text::appendUtf8(out, c);
    }
    return out;
}

std::u16string pathFromBytes(std::string_view bytes)
{
    std::u16string out;
    out.reserve(bytes.size());
    while (!bytes.empty()) {
        const text::Utf8Sequence sequence = text::utf8At(bytes);
        if (sequence.whole) {
            text::appendUtf16(out, sequence.value);
        } else {
            for (std::size_t i = 0; i < sequence.length; ++i)
                out.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[i])));
        }
        bytes.remove_prefix(sequence.length);
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
