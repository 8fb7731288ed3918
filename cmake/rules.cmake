# The warnings and bans that all of our own code is built with.
add_library(kestrova_rules INTERFACE)
target_compile_options(kestrova_rules INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wundef
  $<$<BOOL:${KESTROVA_WERROR}>:-Werror>)
target_compile_definitions(kestrova_rules INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
  QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
