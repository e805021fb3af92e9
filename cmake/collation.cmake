# Turns the collation data into source at build time.
function(add_collation_tables target)
endfunction()
