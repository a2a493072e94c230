# Warnings and sanitizers for every target of the project.
add_compile_options(-Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
if(TB_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

if(TB_SANITIZE)
    set(TB_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_compile_options(${TB_SANITIZER_FLAGS})
    # The sanitizers' instrumentation makes GCC report uninitialised values
    # inside the standard library (std::regex) that are not there.
    add_compile_options(-Wno-maybe-uninitialized)
    add_link_options(${TB_SANITIZER_FLAGS})
endif()
