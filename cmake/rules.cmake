# Warnings and restrictions for all of our own code.
add_library(kestrova_rules INTERFACE)
target_compile_options(kestrova_rules INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wundef
  $<$<BOOL:${KESTROVA_WERROR}>:-Werror>)
# GCC 12 warns of overlapping copies in std::string that do not happen (its bug 105651).
target_compile_options(kestrova_rules INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# Clang checks that what a lock guards is used with the lock held (platform/thread_annotations.h).
target_compile_options(kestrova_rules INTERFACE
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety;-Werror=thread-safety>)
# Input files come from anywhere: let the C library check the sizes of buffers that it knows.
target_compile_options(kestrova_rules INTERFACE
  $<$<CONFIG:Release>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
# A program depends only on those libraries of the engine that it uses.
if(LINUX)
  target_link_options(kestrova_rules INTERFACE -Wl,--as-needed,-z,relro,-z,now)
endif()
target_compile_definitions(kestrova_rules INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
  QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
