# Sourced by the scripts that run a native vxsim in the background (demo, wine_vxctl).
#   start_vxsim [OPTION...]  starts build/native/tools/vxsim/vxsim on a free port of 127.0.0.1
#                            with the options, its console on a fifo held open as descriptor 3
#                            (echo COMMAND >&3), and waits for its listening line; sets
#                            vxsim_pid, vxsim_address and vxsim_log (its output).
#   stop_vxsim               sends quit and waits for it to end.
#   cleanup_vxsim            for an EXIT trap: ends what is left and removes the files.

start_vxsim() {
  vxsim_log=$(mktemp "${TMPDIR:-/tmp}/vxsim.XXXXXX")
  vxsim_console=$(mktemp -u "${TMPDIR:-/tmp}/vxsim-console.XXXXXX")
  mkfifo "$vxsim_console"
  # The console stays open on the fifo until stop_vxsim sends quit.
  build/native/tools/vxsim/vxsim --port 0 "$@" <"$vxsim_console" >"$vxsim_log" 2>&1 &
  vxsim_pid=$!
  exec 3>"$vxsim_console"
  vxsim_address=""
  for _ in $(seq 100); do
    vxsim_address=$(sed -n '1s/^vxsim listening on //p' "$vxsim_log")
    [[ -n "$vxsim_address" ]] && return 0
    sleep 0.05
  done
  echo "$(basename "$0"): vxsim did not start" >&2
  cat "$vxsim_log" >&2
  return 1
}

stop_vxsim() {
  echo quit >&3
  exec 3>&-
  wait "$vxsim_pid" || true
  vxsim_pid=""
}

cleanup_vxsim() {
  exec 3>&- 2>/dev/null || true
  [[ -n "${vxsim_pid:-}" ]] && kill "$vxsim_pid" 2>/dev/null || true
  rm -f "${vxsim_log:-}" "${vxsim_console:-}"
}
