# Doubles of ADO, ADOX and DAO, answered by the embedded engine; for tests and benchmarks under Windows.
add_library(ado_doubles STATIC tests/ado/adoDoubles.cpp tests/ado/adoxDoubles.cpp tests/ado/daoDouble.cpp
  tests/ado/double.cpp tests/ado/registration.cpp tests/ado/variantOfValue.cpp)
target_link_libraries(ado_doubles PUBLIC store)
