// ADOX's objects and DAO's engine, answered by the embedded engine.
#pragma once

#include "tests/ado/double.h"

namespace vellums::tests::ado {

// New objects of the classes that a program creates by name, with one reference each.
Double* newCatalog();
Double* newTable();
Double* newColumn();
Double* newIndex();
Double* newJetEngine(); // DAO.DBEngine.36
Double* newAceEngine(); // DAO.DBEngine.120

} // namespace vellums::tests::ado
