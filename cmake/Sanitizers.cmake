# -DSOAPWRAPPER_SANITIZE=address,undefined (or thread) instruments everything that is built here.
set(SOAPWRAPPER_SANITIZE "" CACHE STRING "Sanitizers for the whole build, as the compiler names them")
if(SOAPWRAPPER_SANITIZE)
    add_compile_options(-fsanitize=${SOAPWRAPPER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${SOAPWRAPPER_SANITIZE})
endif()

# For the tools: under a sanitizer the tests alone run them, and without an optimiser they compile in half the time.
macro(leave_unoptimised_under_sanitizers)
    if(SOAPWRAPPER_SANITIZE)
        add_compile_options(-O0)
    endif()
endmacro()
