# Run by cpack before it packs: the documents that every package has, and manual pages in the form that they have there.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} prefix)
    set(name ${CPACK_DEBIAN_${prefix}_PACKAGE_NAME})
    set(folder "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/doc/${name}")
    file(COPY "${CMAKE_CURRENT_LIST_DIR}/copyright" DESTINATION "${folder}"
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    file(WRITE "${folder}/changelog.Debian"
"${name} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * What changed is in CHANGELOG.md of the source tree.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
    file(GLOB pages "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/man/man*/*.[1-8]")
    execute_process(COMMAND gzip -9nf "${folder}/changelog.Debian" ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
