# cmake -DFILE=... -DRPATH=... -P rpath.cmake: shortens the search path of libraries that stands in a file.
file(RPATH_SET FILE "${FILE}" NEW_RPATH "${RPATH}")
