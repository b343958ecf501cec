# The two kinds of target that the tree is made of, with one set of flags.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(tamboro_flags INTERFACE)
target_compile_options(tamboro_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                                               -Wnon-virtual-dtor -Woverloaded-virtual)
# GCC 12 takes text + std::string for an overlapping copy once it has inlined it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tamboro_flags INTERFACE -Wno-restrict)
endif()
target_include_directories(tamboro_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(TAMBORO_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(TAMBORO_SANITIZE STREQUAL "fuzz")
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(TAMBORO_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()

# The `headers` preset: each header by itself, without what stood before it or was compiled before.
if(CMAKE_VERIFY_INTERFACE_HEADER_SETS)
  add_compile_options(-fsyntax-only)
endif()

# One folder of src/ is one static library named after it; what follows LINKS is the whole of what it may use. The linker
# sees everything; tests/checks/layers.py reads these lines and holds the includes to them.
function(tamboro_layer name)
  cmake_parse_arguments(ARG "QT" "" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  if(CMAKE_VERIFY_INTERFACE_HEADER_SETS)
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR PARENT_PATH base)
    set(headers ${sources})
    list(FILTER headers INCLUDE REGEX "\\.h$")
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${base} FILES ${headers})
  endif()
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME tamboro_${name})
  target_link_libraries(${name} PUBLIC tamboro_flags ${ARG_LINKS})
  if(ARG_QT)
    if(NOT CMAKE_VERIFY_INTERFACE_HEADER_SETS)  # there it would have the folders below built first
      set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    target_compile_definitions(${name} PUBLIC QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
  endif()
endfunction()

# One test binary a layer. HEADERS_OF names a target whose precompiled headers it shares.
function(tamboro_test layer)
  cmake_parse_arguments(ARG "" "HEADERS_OF" "LINKS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${layer}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${layer}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${layer} ${sources})
  set_target_properties(test_${layer} PROPERTIES AUTOMOC ON)
  target_include_directories(test_${layer} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # Test code is compiled more often than it runs: at -O3 it costs half as much time again.
  target_compile_options(test_${layer} PRIVATE $<$<CONFIG:Release>:-O1>)
  if(ARG_HEADERS_OF)
    target_precompile_headers(test_${layer} REUSE_FROM ${ARG_HEADERS_OF})
  endif()
  target_link_libraries(test_${layer} PRIVATE ${layer} ${ARG_LINKS})
  add_test(NAME ${layer} COMMAND test_${layer})
  set_tests_properties(${layer} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 900)
endfunction()
