# The Debian packages varnel and varnel-window: "cpack --preset release", or packaging/build_deb for all of it.

# What every package must hold besides its files.
function(varnel_package_papers package component)
    set(PACKAGE ${package})
    configure_file(debian/changelog.in ${package}.changelog @ONLY)
    varnel_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/${package}.changelog ${package}.changelog
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component} RENAME changelog.gz)
    configure_file(debian/copyright.in copyright @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
        COMPONENT ${component})
endfunction()

# The build's date is that of SOURCE_DATE_EPOCH where it is set: the same sources then give the same packages.
string(TIMESTAMP PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(CPACK_PACKAGE_CONTACT "Varnel developers <dev@varnel.example>" CACHE STRING "The packages' maintainer")

# The terms of the libraries that are compiled into the programs, as Debian's packages tell them.
foreach(library libcli11-dev libtomlplusplus-dev nlohmann-json3-dev)
    set(terms /usr/share/doc/${library}/copyright)
    if(EXISTS ${terms})
        file(READ ${terms} text)
        string(APPEND LIBRARY_TERMS "\n${library}\n\n${text}")
    endif()
endforeach()

varnel_package_papers(varnel program)
set(CPACK_COMPONENTS_ALL program)
if(TARGET varnel_window)
    varnel_package_papers(varnel-window window)
    list(APPEND CPACK_COMPONENTS_ALL window)
endif()

set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnel)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME varnel)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "tdsodbc")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "varnel-window, odbc-mariadb")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION
"runs load sessions between databases and text files
Reads a load session's definition from a repository, prepares the target
tables, copies the rows from one database into another, and leaves a log, a
recorded outcome and an exit status.

Microsoft Access files, FoxPro and dBASE tables, SQLite files, MySQL, MariaDB,
SQL Server, Oracle, whatever else has an ODBC driver, and text files can be
read and written. SQL Server is reached through the driver in tdsodbc.

The package holds the program varnel, which runs one session, and
varnel-admin, which makes and shows repositories.")

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME varnel-window)
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "varnel (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_WINDOW_PACKAGE_ENHANCES "varnel")
set(CPACK_DEBIAN_WINDOW_DESCRIPTION
"window that shows a running load session
\"varnel 12 showoutput\" runs load session 12 and shows its progress and its
log, in a window where this package is installed and a display can be reached,
otherwise in the terminal.")

include(CPack)
