# The translations of all texts, compiled into the bundle.

find_program(QUORVANE_LRELEASE lrelease PATHS /usr/lib/qt6/bin NO_DEFAULT_PATH)
find_program(QUORVANE_LRELEASE NAMES lrelease6 lrelease-qt6 lrelease)
quorvane_require(QUORVANE_LRELEASE "Qt's lrelease (for translations)" "qt6-l10n-tools")

# quorvane_translations(TARGET FOLDER LANGUAGE...)
function(quorvane_translations target folder)
  set(compiled)
  foreach(language IN LISTS ARGN)
    set(source ${PROJECT_SOURCE_DIR}/resources/Translations/quorvane_${language}.ts)
    set(result ${folder}/quorvane_${language}.qm)
    add_custom_command(OUTPUT ${result}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${QUORVANE_LRELEASE} -silent ${source} -qm ${result}
      DEPENDS ${source} VERBATIM)
    list(APPEND compiled ${result})
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${compiled})
endfunction()
