# Real texts of this system, imported and searched by the command-line program, against a search of the
# test's own. The texts stay in build/corpus. Skipped where Python or the texts are missing.
find_program(VELLUMS_PYTHON python3)
set(corpus ${PROJECT_SOURCE_DIR}/build/corpus)
if(VELLUMS_PYTHON)
  add_test(NAME corpus.collect
    COMMAND ${VELLUMS_PYTHON} ${PROJECT_SOURCE_DIR}/tests/corpus/collect.py ${corpus})
else()
  add_test(NAME corpus.collect COMMAND ${CMAKE_COMMAND} -E echo "skipped: python3 is not installed")
endif()
set_tests_properties(corpus.collect PROPERTIES FIXTURES_SETUP corpus TIMEOUT 300 LABELS corpus
  SKIP_RETURN_CODE 77 SKIP_REGULAR_EXPRESSION "^skipped: ")
foreach(kind mdb accdb)
  if(VELLUMS_PYTHON)
    add_test(NAME corpus.search_${kind} COMMAND ${VELLUMS_PYTHON}
      ${PROJECT_SOURCE_DIR}/tests/corpus/search.py $<TARGET_FILE:vellums-cli> ${corpus} ${kind})
    set_tests_properties(corpus.search_${kind} PROPERTIES FIXTURES_REQUIRED corpus TIMEOUT 300 LABELS corpus
      SKIP_RETURN_CODE 77 SKIP_REGULAR_EXPRESSION "^skipped: ")
  endif()
endforeach()
