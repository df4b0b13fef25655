#!/usr/bin/env bash
# A private PulseAudio server with one null sink "quorvex", so that Wine has a sound device, a
# mixer and waveaudio for the music tests. Its sockets and state live under DIR; clients (Wine's
# pulse driver, parec, pactl) reach it through the variables that `env` prints.
# Usage: pulse-server.sh start DIR | stop DIR | env DIR
set -euo pipefail
action=${1:?start, stop or env}
dir=$(mkdir -p "${2:?a folder}" && cd "$2" && pwd)

case $action in
  env)
    # The runtime folder holds the socket; HOME keeps the server's cookie out of the user's.
    echo "PULSE_RUNTIME_PATH=$dir/run"
    echo "PULSE_SERVER=unix:$dir/run/native"
    ;;
  stop)
    if [ -f "$dir/pulseaudio.pid" ]; then
      kill "$(cat "$dir/pulseaudio.pid")" 2>/dev/null || true
      rm -f "$dir/pulseaudio.pid"
    fi
    ;;
  start)
    if ! command -v pulseaudio >/dev/null || ! command -v parec >/dev/null; then
      echo "pulse-server.sh: no pulseaudio or parec: the music tests run without sound" >&2
      exit 1
    fi
    bash "$0" stop "$dir"
    mkdir -p "$dir/run" "$dir/state" "$dir/home"
    # As root the server refuses to run as a per-user daemon unless it has a runtime folder of
    # its own; --system would need the pulse user and group.
    PULSE_RUNTIME_PATH=$dir/run PULSE_STATE_PATH=$dir/state HOME=$dir/home \
      setsid pulseaudio --daemonize=no --exit-idle-time=-1 -n --use-pid-file=no \
      --disallow-exit --disable-shm=yes --log-target=file:"$dir/pulseaudio.log" \
      --load="module-null-sink sink_name=quorvex rate=44100" \
      --load=module-native-protocol-unix </dev/null >/dev/null 2>&1 &
    echo $! > "$dir/pulseaudio.pid"
    for _ in $(seq 50); do [ -S "$dir/run/native" ] && break; sleep 0.1; done
    PULSE_SERVER=unix:$dir/run/native pactl info >/dev/null
    ;;
  *)
    echo "usage: pulse-server.sh start|stop|env DIR" >&2
    exit 2
    ;;
esac
