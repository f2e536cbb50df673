# Warnings, sanitizers and the include root that every target of the tree shares.
add_library(kalde2_settings INTERFACE)
target_include_directories(kalde2_settings INTERFACE ${PROJECT_SOURCE_DIR})
if(MSVC)
  target_compile_options(kalde2_settings INTERFACE /W4 $<$<BOOL:${KALDE2_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(kalde2_settings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow $<$<BOOL:${KALDE2_WARNINGS_AS_ERRORS}>:-Werror>)
  # False alarms of GCC 12 on std::string in optimised builds (GCC bugs 105651 and 105562).
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kalde2_settings INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
endif()
if(KALDE2_SANITIZE)
  add_compile_options(-fsanitize=${KALDE2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KALDE2_SANITIZE})
endif()
# What Debian builds its own programs with: checked buffer calls, and no late binding to overwrite.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT KALDE2_SANITIZE)
  target_compile_definitions(kalde2_settings INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo>:_FORTIFY_SOURCE=2>)
  target_link_options(kalde2_settings INTERFACE $<$<CONFIG:Release,RelWithDebInfo>:-Wl,-z,now>)
endif()
