# One script scenario under Wine: registers VXBr5.DLL in the current prefix, runs the script,
# unregisters the DLL and compares what was printed with the expected text. The script runs with
# cscript, or with RUNNER and its RUNNER_ARGS after the script: the script host (vxscripthost,
# which binds events) or scenario_runner (which runs cscript against a simulator of its own and
# prints what the simulator shows after the script too). cscript prints nothing for a script
# error and still exits 0, so every expected text ends with a marker line that only a script that
# ran to its end prints; the exit code must be 0 as well.
#   cmake -DWINE=... -DMODULE=VXBr5.dll [-DRUNNER=... [-DRUNNER_ARGS=...]] -DSCRIPT=x.vbs
#         -DEXPECTED=x.txt -P run_script.cmake
# Wine takes Z: plus the host's path for a file of this machine.
execute_process(COMMAND ${WINE} regsvr32 /s Z:${MODULE} RESULT_VARIABLE registered)
if(NOT registered EQUAL 0)
  message(FATAL_ERROR "regsvr32 failed for ${MODULE}: ${registered}")
endif()
if(RUNNER)
  set(command Z:${RUNNER} Z:${SCRIPT} ${RUNNER_ARGS})
else()
  set(command cscript //nologo Z:${SCRIPT})
endif()
execute_process(COMMAND ${WINE} ${command}
  OUTPUT_VARIABLE printed ERROR_VARIABLE errors RESULT_VARIABLE exited TIMEOUT 120)
execute_process(COMMAND ${WINE} regsvr32 /s /u Z:${MODULE})

string(REPLACE "\r" "" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected OR NOT exited EQUAL 0)
  message(FATAL_ERROR "${SCRIPT} printed (exit ${exited}):\n${printed}${errors}\nexpected:\n${expected}")
endif()
