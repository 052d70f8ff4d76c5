# One script scenario under Wine: registers VXBr5.DLL in the current prefix, runs the script with
# cscript, or with the script host HOST (vxscripthost, which binds events) when given,
# unregisters the DLL and compares what the script printed with the expected text. cscript
# prints nothing for a script error and still exits 0, so every expected text ends with a marker
# line that only a script that ran to its end prints; the host's exit code must be 0 as well.
#   cmake -DWINE=... -DMODULE=VXBr5.dll [-DHOST=vxscripthost.exe] -DSCRIPT=x.vbs -DEXPECTED=x.txt
#         -P run_script.cmake
# Wine takes Z: plus the host's path for a file of this machine.
execute_process(COMMAND ${WINE} regsvr32 /s Z:${MODULE} RESULT_VARIABLE registered)
if(NOT registered EQUAL 0)
  message(FATAL_ERROR "regsvr32 failed for ${MODULE}: ${registered}")
endif()
if(HOST)
  set(runner Z:${HOST})
else()
  set(runner cscript //nologo)
endif()
execute_process(COMMAND ${WINE} ${runner} Z:${SCRIPT}
  OUTPUT_VARIABLE printed ERROR_VARIABLE errors RESULT_VARIABLE exited TIMEOUT 120)
execute_process(COMMAND ${WINE} regsvr32 /s /u Z:${MODULE})

string(REPLACE "\r" "" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected OR NOT exited EQUAL 0)
  message(FATAL_ERROR "${SCRIPT} printed (exit ${exited}):\n${printed}${errors}\nexpected:\n${expected}")
endif()
