# -DSOAPWRAPPER_SANITIZE=address,undefined (or thread) instruments everything that is built here.
set(SOAPWRAPPER_SANITIZE "" CACHE STRING "Sanitizers for the whole build, as the compiler names them")
if(SOAPWRAPPER_SANITIZE)
    add_compile_options(-fsanitize=${SOAPWRAPPER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${SOAPWRAPPER_SANITIZE})
endif()
