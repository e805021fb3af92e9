#include "store/ado/sourceValue.h"

#include "store/connectionString.h"

namespace vellums {

// A double quote cannot stand in a path, so none needs to be doubled.
std::u16string sourceValue(const std::u16string& path)
{
    const bool plain = path.find(u';') == std::u16string::npos && path.find(u'"') == std::u16string::npos &&
        !path.starts_with(u'\'') && !path.starts_with(u' ');
    return plain || path.starts_with(u'"') ? path : u'"' + path + u'"';
}

std::u16string withQuotedSource(const std::u16string& connectionString)
{
    const std::u16string file = fileOf(connectionString);
    const std::u16string value = sourceValue(file);
    if (value == file)
        return connectionString;
    std::u16string quoted = connectionString;
    return quoted.replace(connectionString.find(file), file.size(), value);
}

} // namespace vellums
