# Runs one script through zento-cli on the simulated bench in virtual time, in an
# empty folder and a fresh home, and holds what it prints, tells and returns against the approved
# text.
#
#   cmake -DCLI=... -DSCRIPT=... -DEXPECTED=... -DWORK=... [-DAPPROVE=ON] -P run_scenario.cmake
#
# A script's first lines may be "#! OPTION...": further options of zento-cli, and "#+ FILE": a file
# of the project that is to stand beside the script. With APPROVE the
# approved text is written instead; look at what changed before committing it.

get_filename_component(name ${SCRIPT} NAME_WE)

set(options --bench sim --clock virtual --home home)
file(STRINGS ${SCRIPT} directives REGEX "^#! ")
foreach(directive IN LISTS directives)
  string(SUBSTRING "${directive}" 3 -1 directive)
  separate_arguments(directive UNIX_COMMAND "${directive}")
  list(APPEND options ${directive})
endforeach()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
configure_file(${SCRIPT} ${WORK}/script.zsc COPYONLY)
file(STRINGS ${SCRIPT} companions REGEX "^#\\+ ")
foreach(companion IN LISTS companions)
  string(SUBSTRING "${companion}" 3 -1 companion)
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/../${companion} DESTINATION ${WORK})
endforeach()
execute_process(
  COMMAND ${CLI} ${options} script script.zsc
  WORKING_DIRECTORY ${WORK}
  RESULT_VARIABLE status
  OUTPUT_FILE ${WORK}/actual
  ERROR_FILE ${WORK}/actual)
file(READ ${WORK}/actual actual)
string(REPLACE "${WORK}/" "" actual "${actual}")
file(WRITE ${WORK}/actual "${actual}exit status ${status}\n")

if(APPROVE)
  configure_file(${WORK}/actual ${EXPECTED} COPYONLY)
  return()
endif()
execute_process(
  COMMAND ${CMAKE_COMMAND} -E compare_files --ignore-eol ${WORK}/actual ${EXPECTED}
  RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
if(differs)
  file(READ ${WORK}/actual actual)
  find_program(DIFF diff)
  if(DIFF)
    execute_process(COMMAND ${DIFF} -u ${EXPECTED} ${WORK}/actual)
  endif()
  message(FATAL_ERROR "${name}: this is not what was approved:\n${actual}")
endif()
