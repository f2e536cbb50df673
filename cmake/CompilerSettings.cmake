# Warnings, sanitizers and the include root that every target of the tree shares.
add_library(kalde2_settings INTERFACE)
target_include_directories(kalde2_settings INTERFACE ${PROJECT_SOURCE_DIR})
if(MSVC)
  target_compile_options(kalde2_settings INTERFACE /W4 $<$<BOOL:${KALDE2_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(kalde2_settings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow $<$<BOOL:${KALDE2_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
if(KALDE2_SANITIZE)
  add_compile_options(-fsanitize=${KALDE2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KALDE2_SANITIZE})
endif()
