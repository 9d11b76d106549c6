// Its includes come from the build.
