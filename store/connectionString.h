// Connection strings: made from a database file, and taken apart again.
#pragma once

#include "store/notebook.h"

#include <string>
#include <string_view>

namespace vellums {

// The connection string for a file (name or path). Of a file that is neither mdb nor accdb the template
// comes back unchanged.
std::u16string connectionStringFor(const Notebook& notebook, std::u16string_view file);

enum class ConnPart { WithBareName = 1, FileName = 2, FullPath = 3 };

// A part of a connection string: the string with the data folder taken out; the bare file name; the
// full path of the file (a path that is not absolute counts from the data folder). Of a string that names no
// file but a server the last two are the server's name.
std::u16string getConnPart(const Notebook& notebook, const std::u16string& connectionString, ConnPart part);

// The string as it is opened: a path that is not absolute, bare name or not, is put behind the data folder.
std::u16string expandedConnection(const Notebook& notebook, const std::u16string& connectionString);

// The string names a file by a path that counts from the data folder.
bool namesRelativeFile(std::u16string_view connectionString);

// The password of a database file: the value of "Jet OLEDB:Database Password", empty where there is none.
std::u16string databasePassword(std::u16string_view connectionString);

// What stands behind "Data Source=": a file or a server.
std::u16string fileOf(std::u16string_view connectionString);

} // namespace vellums
