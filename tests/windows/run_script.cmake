# One script scenario under Wine: registers VXBr5.DLL in the current prefix, runs the script with
# cscript, unregisters the DLL and compares what the script printed with the expected text. With
# RUNNER (scenario_runner.exe) the runner runs cscript against a simulator of its own, started
# with RUNNER_ARGS, and the expected text holds what the simulator shows after the script too.
# cscript prints nothing for a script error and still exits 0, so every expected text ends with
# a marker line that only a script that ran to its end prints.
#   cmake -DWINE=... -DMODULE=VXBr5.dll [-DRUNNER=... [-DRUNNER_ARGS=...]] -DSCRIPT=x.vbs
#         -DEXPECTED=x.txt -P run_script.cmake
# Wine takes Z: plus the host's path for a file of this machine.
execute_process(COMMAND ${WINE} regsvr32 /s Z:${MODULE} RESULT_VARIABLE registered)
if(NOT registered EQUAL 0)
  message(FATAL_ERROR "regsvr32 failed for ${MODULE}: ${registered}")
endif()
if(RUNNER)
  set(host ${RUNNER} Z:${SCRIPT} ${RUNNER_ARGS})
else()
  set(host cscript //nologo Z:${SCRIPT})
endif()
execute_process(COMMAND ${WINE} ${host}
  OUTPUT_VARIABLE printed ERROR_VARIABLE errors TIMEOUT 120)
execute_process(COMMAND ${WINE} regsvr32 /s /u Z:${MODULE})

string(REPLACE "\r" "" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "${SCRIPT} printed:\n${printed}${errors}\nexpected:\n${expected}")
endif()
