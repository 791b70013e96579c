# What every target of the project compiles with.
add_library(zelm_options INTERFACE)
target_compile_options(
  zelm_options
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
            $<$<BOOL:${ZELM_WARNINGS_AS_ERRORS}>:-Werror>
            # The compiler sweeps its memory less often, which takes a tenth of its time.
            $<$<CXX_COMPILER_ID:GNU>:--param=ggc-min-heapsize=1048576>
            # GCC 12 sees uninitialised captures in inlined lambdas where there are none.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>
            # The last bit counts: no fused steps, and the C library's own functions in place of the compiler's ideas of
            # them (some compilers turn pow(10, x) into exp10(x)).
            -ffp-contract=off -fno-fast-math -fno-builtin-pow -fno-builtin-powf -fno-builtin-exp -fno-builtin-expf)

# Adds the triples of resource kinds in this folder to the library: zelm_blocks(Bram Plam)
# Models have a source each. What instantiates the data and parameter blocks is the same for all but for the names, and
# the build writes it, one source for all data blocks of the folder and one for all parameter blocks.
function(zelm_blocks)
  get_filename_component(subsystem "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  foreach(part Data Params)
    file(READ "${PROJECT_SOURCE_DIR}/cmake/ZelmBlock${part}.cpp.in" template)
    set(text "")
    foreach(block IN LISTS ARGN)
      string(CONFIGURE "${template}" instance @ONLY)
      string(APPEND text "${instance}")
    endforeach()
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${subsystem}${part}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "${text}" @ONLY)
    target_sources(zelmorvane PRIVATE "${source}")
    # They hold no formulas: clearing cells, which vectors do, is all that calculating asks of them.
    set_source_files_properties(
      "${source}" TARGET_DIRECTORY zelmorvane
      PROPERTIES COMPILE_OPTIONS
                 "$<$<CONFIG:Release>:$<IF:$<STREQUAL:${part},Params>,-O2;-ftree-vectorize;$<$<CXX_COMPILER_ID:GNU>:-fvect-cost-model=dynamic>,-O1>>")
  endforeach()
  foreach(block IN LISTS ARGN)
    target_sources(zelmorvane PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/ZelmOrvane${block}Model.cpp")
  endforeach()
endfunction()

# The list of all resource kinds, one row each; it stands with the tool.
set(ZELM_BLOCK_LIST "${PROJECT_SOURCE_DIR}/host/blocks/BlockList.def")

# Writes BlockHeaders.h into this folder's build folder: the headers that the list's rows need.
function(zelm_block_headers)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${ZELM_BLOCK_LIST}")
  file(STRINGS "${ZELM_BLOCK_LIST}" rows REGEX "^BLOCK")
  set(includes "")
  foreach(row IN LISTS rows)
    if(row MATCHES "^BLOCK *\\(([A-Za-z0-9]+), *([a-z]+),")
      string(APPEND includes "#include \"${CMAKE_MATCH_2}/ZelmOrvane${CMAKE_MATCH_1}Model.h\"\n")
    endif()
  endforeach()
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/BlockHeaders.h" CONTENT "${includes}" @ONLY)
endfunction()

# Writes FormulaRows.cpp into this folder's build folder: what rows of cells tell of formulas, and the sources of both as
# they stand, taken in by the assembler, which the dependency scan doesn't see.
function(zelm_formula_rows)
  file(STRINGS "${ZELM_BLOCK_LIST}" rows REGEX "^BLOCK")
  set(ZELM_ROW_TABLES "")
  set(ZELM_ROW_NAMES "")
  foreach(row IN LISTS rows)
    if(row MATCHES "^BLOCK *\\(([A-Za-z0-9]+), *([a-z]+),")
      set(block "${CMAKE_MATCH_1}")
      string(APPEND ZELM_ROW_TABLES "constexpr FormulaRow k${block}[] = {\n"
                                    "#define ZELM_CELL_ROWS \"${CMAKE_MATCH_2}/ZelmOrvane${block}Cells.def\"\n"
                                    "#include \"host/blocks/FormulaRows.inc\"\n};\n")
      string(APPEND ZELM_ROW_NAMES "        {\"${block}\", k${block}},\n")
    endif()
  endforeach()
  set(ZELM_INCLUDED_SOURCES "")
  set(sources "")
  foreach(subsystem IN LISTS ZELM_SUBSYSTEMS)
    file(GLOB files CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/${subsystem}/*Model.cpp"
         "${PROJECT_SOURCE_DIR}/${subsystem}/Zelm*.h" "${PROJECT_SOURCE_DIR}/${subsystem}/Zelm*Cells.def"
         "${PROJECT_SOURCE_DIR}/${subsystem}/Zelm*Cells.inc")
    list(FILTER files EXCLUDE REGEX "(Model|Data|Params)\\.h$")
    if(subsystem STREQUAL "framework")
      list(FILTER files INCLUDE REGEX "(Model\\.cpp|Cells\\.def|ZelmArithmetic\\.h)$")
    endif()
    foreach(file IN LISTS files)
      string(APPEND ZELM_INCLUDED_SOURCES "    .ascii \"\\001${file}\\n\"\n    .incbin \"${PROJECT_SOURCE_DIR}/${file}\"\n")
      list(APPEND sources "${PROJECT_SOURCE_DIR}/${file}")
    endforeach()
  endforeach()
  set(ZELM_CONSTANTS_SECTION .rodata)
  if(EMSCRIPTEN)
    set(ZELM_CONSTANTS_SECTION [[.rodata.zelm_formula_sources,"",@]])
  endif()
  set(source "${CMAKE_CURRENT_BINARY_DIR}/FormulaRows.cpp")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/ZelmFormulaRows.cpp.in" "${source}" @ONLY)
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${sources}" COMPILE_OPTIONS
                                                     "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=;-Wno-overlength-strings")
endfunction()

# Adds a test program from the sources in this folder: zelm_test(memories_test BramTest.cpp PlamTest.cpp)
function(zelm_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE zelmorvane zelm_test_support zelm_options)
  target_compile_options(${name} PRIVATE -O0) # the code under test is in the libraries; tests compile twice as fast
  target_precompile_headers(${name} REUSE_FROM zelm_test_support)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()

# Adds a benchmark program to those that the target benchmarks builds: zelm_bench(memories_bench MemoriesBench.cpp)
function(zelm_bench name)
  add_executable(${name} EXCLUDE_FROM_ALL ${ARGN})
  add_dependencies(benchmarks ${name})
  target_compile_definitions(${name} PRIVATE ZELM_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE zelmorvane benchmark::benchmark_main zelm_options)
endfunction()
