#!/usr/bin/env bash
# A private CUPS server with a CUPS-PDF queue "PDF" as its default printer, for the printing
# tests. Its configuration, spool and logs live under DIR; clients reach it through the socket
# that `env` prints (CUPS_SERVER). Printed pages land as PDF files in $HOME/PDF (cups-pdf's own
# setting). Needs root, as the cups-pdf backend does.
# Usage: cups-server.sh start DIR | stop DIR | env DIR
set -euo pipefail
action=${1:?start, stop or env}
dir=$(mkdir -p "${2:?a folder}" && cd "$2" && pwd)
socket=$dir/cups.sock

case $action in
  env)
    echo "CUPS_SERVER=$socket"
    ;;
  stop)
    if [ -f "$dir/cupsd.pid" ]; then
      kill "$(cat "$dir/cupsd.pid")" 2>/dev/null || true
      rm -f "$dir/cupsd.pid"
    fi
    ;;
  start)
    if [ "$(id -u)" != 0 ] || [ ! -x /usr/sbin/cupsd ] || [ ! -e /usr/lib/cups/backend/cups-pdf ]; then
      echo "cups-server.sh: no root or no cupsd/cups-pdf: printing tests run without a printer" >&2
      exit 1
    fi
    bash "$0" stop "$dir"
    mkdir -p "$dir/spool/tmp" "$dir/cache" "$dir/state" "$dir/log" "$dir/ppd" "$dir/ssl"
    cat > "$dir/cupsd.conf" <<CONF
Listen $socket
LogLevel warn
WebInterface No
Browsing No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
CONF
    cat > "$dir/cups-files.conf" <<CONF
ServerRoot $dir
RequestRoot $dir/spool
TempDir $dir/spool/tmp
CacheDir $dir/cache
StateDir $dir/state
ServerBin /usr/lib/cups
DataDir /usr/share/cups
DocumentRoot /usr/share/cups/doc-root
AccessLog $dir/log/access_log
ErrorLog $dir/log/error_log
PageLog $dir/log/page_log
SystemGroup root
Sandboxing Relaxed
FileDevice No
CONF
    # In the foreground of its own background process, so that its process id is known.
    setsid /usr/sbin/cupsd -f -c "$dir/cupsd.conf" -s "$dir/cups-files.conf" </dev/null \
      >>"$dir/log/cupsd.out" 2>&1 &
    echo $! > "$dir/cupsd.pid"
    for _ in $(seq 50); do [ -S "$socket" ] && break; sleep 0.1; done
    export CUPS_SERVER=$socket
    lpadmin -p PDF -E -v cups-pdf:/ -P /usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd
    lpadmin -d PDF
    lpstat -d
    ;;
  *)
    echo "usage: cups-server.sh start|stop|env DIR" >&2
    exit 2
    ;;
esac
