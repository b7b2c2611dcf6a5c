# Run by CPack between gathering the files and building the package.
file(GLOB_RECURSE pages ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1
    ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/velmora/changelog)
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
