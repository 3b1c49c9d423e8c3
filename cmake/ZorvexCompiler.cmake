# Compiler settings shared by every target of ours; third-party headers are SYSTEM and not affected.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(ZORVEX_CCACHE ccache)
if(ZORVEX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ZORVEX_CCACHE})
endif()

add_library(zorvex_compiler INTERFACE)
target_compile_options(
  zorvex_compiler
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow
            # Units of text pass between unsigned short, char16_t and XMLCh by pointer.
            -fno-strict-aliasing
            # The high-precision transforms need each product rounded on its own.
            -ffp-contract=off
            # GCC 12 sees overlapping copies in std::string's operator+ where there are none.
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
if(ZORVEX_WERROR)
  target_compile_options(zorvex_compiler INTERFACE -Werror)
endif()

find_program(ZORVEX_LLD ld.lld)
if(ZORVEX_LLD)
  add_link_options(-fuse-ld=lld)
endif()

set(ZORVEX_SANITIZE "" CACHE STRING "Sanitizers for everything, as in -fsanitize=")
if(ZORVEX_SANITIZE)
  add_compile_options(-fsanitize=${ZORVEX_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZORVEX_SANITIZE})
endif()
