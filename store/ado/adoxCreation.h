// New database files, made by ADOX.
#pragma once

#include <string>
#include <string_view>

namespace vellums {

// Makes the file (full path) with one empty snippet table. The provider id chooses the engine: "103"
// that of Jet 4, any other the ACE engine, whatever the extension. When it fails, nothing is left of a
// file that it has made; one that was there before is never touched. Throws ProviderError.
void createWithAdox(std::u16string_view providerId, const std::u16string& path, const std::u16string& table);

} // namespace vellums
