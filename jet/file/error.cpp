#include "jet/file/error.h"

namespace vellums::jet {

void throwDamaged(const std::u16string& detail)
{
    throw Error(3049, kFail,
        u"Cannot open database. It may not be a database that your application recognizes, or the file may "
        u"be "
        u"corrupt: " +
            detail + u".");
}

void throwDiskFailed()
{
    throw Error(3043, kFail, u"Disk or network error.");
}

void throwUnsupported(const std::u16string& sentence)
{
    throw Error(0, kErrorsInCommand, sentence);
}

void throwTypeMismatch()
{
    throw Error(3464, kCantConvertValue, u"Data type mismatch in criteria expression.");
}

void throwFieldTooSmall()
{
    throw Error(3163, kDataOverflow,
        u"The field is too small to accept the amount of data you attempted to add. Try inserting or pasting "
        u"less "
        u"data.");
}

void throwInRelationship()
{
    throw Error(3281, kFail,
        u"Cannot delete this index or table. It is either the current index or is used in a relationship.");
}

void throwDuplicateKey()
{
    throw Error(3022, kFail,
        u"The changes you requested to the table were not successful because they would create duplicate "
        u"values in "
        u"the index, primary key, or relationship. Change the data in the field or fields that contain "
        u"duplicate "
        u"data, remove the index, or redefine the index to permit duplicate entries and try again.");
}

void throwNullNotAllowed(const std::u16string& table, const std::u16string& column)
{
    throw Error(3314, kFail,
        u"The field '" + table + u"." + column +
            u"' cannot contain a Null value because the Required property for this field is set to True. "
            u"Enter a "
            u"value in this field.");
}

void throwEmptyNotAllowed(const std::u16string& table, const std::u16string& column)
{
    throw Error(3315, kFail, u"Field '" + table + u"." + column + u"' cannot be a zero-length string.");
}

} // namespace vellums::jet
