# Run by CPack between gathering the files and packing them. A ParamDB.txt beside the programs makes their own folder the
# program folder: so the archive's data stays in its folder, on whatever drive that is.
if(CPACK_GENERATOR STREQUAL "ZIP")
    file(WRITE ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/ParamDB.txt
        "Provider=SQLite;Data Source=$$APPPATH$$\\velmora.db\r\n"
        "Provider=SQLite;Data Source=$$APPPATH$$\\share\\velmora\\factory.db\r\n")
endif()
