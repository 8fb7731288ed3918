# Turns the trees that were installed for packaging, one a package, into what Debian expects: programs stripped,
# manuals compressed, changelogs, copyright and lintian's overrides added. CPack runs it, before it packs.
find_program(GZIP gzip REQUIRED)
find_program(STRIP strip REQUIRED)

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# With the permissions of a document, whatever those of the original are.
function(add_document file folder name)
  set(ENV{DESTDIR} "") # the folder is one of the tree already
  file(INSTALL ${file} DESTINATION ${folder} RENAME ${name} MESSAGE_NEVER
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(finish tree)
  get_filename_component(package ${tree} NAME)
  set(share ${tree}/usr/share)
  set(documents ${share}/doc/${package})
  add_document(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents} copyright)
  add_document(${CMAKE_CURRENT_LIST_DIR}/changelog ${documents} changelog.Debian)
  add_document(${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md ${documents} changelog)
  add_document(${CMAKE_CURRENT_LIST_DIR}/${package}.lintian-overrides ${share}/lintian/overrides ${package})

  file(GLOB manuals ${share}/man/man*/*.[0-9])
  run(${GZIP} -9 --no-name ${documents}/changelog ${documents}/changelog.Debian ${manuals})
  file(GLOB programs ${tree}/usr/bin/*)
  run(${STRIP} --strip-unneeded --remove-section=.comment --remove-section=.note ${programs})
  # Debian's zsh looks elsewhere than zsh by itself.
  if(EXISTS ${share}/zsh/site-functions)
    file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
  endif()
  # The folders were made with the permissions that the user's umask leaves.
  file(CHMOD_RECURSE ${tree}/usr DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endfunction()

file(GLOB trees ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(tree ${trees})
  finish(${tree})
endforeach()
