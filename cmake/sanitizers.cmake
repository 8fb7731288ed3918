# KESTROVA_SANITIZE: empty, "address" (with undefined behaviour) or "thread".
set(KESTROVA_SANITIZE "" CACHE STRING "Sanitizer to build with: address, thread or none")
if(KESTROVA_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(KESTROVA_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(KESTROVA_SANITIZE)
  message(FATAL_ERROR "KESTROVA_SANITIZE is \"${KESTROVA_SANITIZE}\"; it takes address, thread or nothing")
endif()
if(KESTROVA_SANITIZE)
  # The instrumentation hides from GCC that some paths cannot be taken: it sees copies beyond the ends of strings.
  target_compile_options(kestrova_rules INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>)
  target_sources(kestrova_rules INTERFACE ${CMAKE_CURRENT_LIST_DIR}/sanitizer_suppressions.cpp)
endif()
