# Compile options that every target shares. Single-precision results are part of what the instrument
# sounds like, so products and sums are never contracted, and nothing is tuned to the build machine.
add_library(ombrix_options INTERFACE)
target_compile_options(ombrix_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off
  $<$<BOOL:${OMBRIX_WERROR}>:-Werror>)
target_compile_definitions(ombrix_options INTERFACE QT_NO_KEYWORDS OMBRIX_VERSION="${PROJECT_VERSION}")
if(OMBRIX_SANITIZE)
  target_compile_options(ombrix_options INTERFACE -fsanitize=${OMBRIX_SANITIZE} -fno-omit-frame-pointer
    $<$<BOOL:${OMBRIX_FUZZ}>:-fsanitize=fuzzer-no-link>)
  if(OMBRIX_SANITIZE MATCHES undefined)
    target_compile_options(ombrix_options INTERFACE -fno-sanitize-recover=undefined)
  endif()
  target_link_options(ombrix_options INTERFACE -fsanitize=${OMBRIX_SANITIZE})
endif()

# ombrix_library(NAME DEPENDS lib...): one static library of all sources below the current folder,
# whose include path is that folder. What it may include is what it links.
function(ombrix_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;PRIVATE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ombrix_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE})
endfunction()

# Where several sources are built at once, what one names for itself may stand before the local names
# of the next one: that is no shadowing. Linked last, so that it is the last word.
add_library(ombrix_unity_options INTERFACE)
target_compile_options(ombrix_unity_options INTERFACE -Wno-shadow)

# ombrix_unity(LIBRARY): the headers of Qt and of the standard library take most of the time of a
# compilation. Builds that only run tests read them for several sources of a library at once.
function(ombrix_unity library)
  if(OMBRIX_UNITY)
    set_target_properties(${library} PROPERTIES UNITY_BUILD ON)
    target_link_libraries(${library} PRIVATE ombrix_unity_options)
  endif()
endfunction()

# ombrix_headers(LIBRARY HEADER...): headers of the system that most of the library's sources include
# are read once for all of them. Never our own: what a source uses of these it includes.
function(ombrix_headers library)
  if(NOT OMBRIX_UNITY)
    target_precompile_headers(${library} PRIVATE ${ARGN})
    target_compile_options(${library} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)  # for ccache
  endif()
endfunction()

# ombrix_moc(TARGET): runs Qt's meta-object compiler over the target. It looks for new headers only
# when its timestamp is gone, so the globbed sources are compared with those of the last time.
function(ombrix_moc target)
  get_target_property(sources ${target} SOURCES)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.txt)
  set(known "")
  if(EXISTS ${list})
    file(READ ${list} known)
  endif()
  if(NOT known STREQUAL "${sources}")
    file(WRITE ${list} "${sources}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
  endif()
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL STATIC_LIBRARY)
    ombrix_unity(${target})
  endif()
endfunction()
