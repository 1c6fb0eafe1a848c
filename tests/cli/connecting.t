Time limits of connections. They need a name with two addresses, therefore this test uses its own list of hosts.

  $ unshare -rm true 2> /dev/null || exit 80
  $ . "$SUPPORT/session.sh"
  $ printf '127.0.0.1 two.test\n127.0.0.2 two.test\n' > hosts
  $ with_hosts() { exec unshare -rm sh -c 'mount --bind hosts /etc/hosts && exec "$@"' sh "$@"; }
  $ serve --hang; two=two.test:${address#*:}
  $ printf '\r\n\n   NE1 26-03-04 05:06:07\r\nM  70 COMPLD\r\n;' > answer
  $ serve --host 127.0.0.2 --port "${two#*:}" --times 2 --silent answer

The second address is tried within the time limit if the first does not answer.

  $ (with_hosts varnel ask --timeout 1 "$two" RTRV-HDR:::70) | grep ctag
  response  COMPLD  ctag 70

The limit of 30 seconds for connections and log-ins.

  $ (umask 077; echo secret > password)
  $ serve --hang; echo "hanging $address" > list
  $ echo receive > steps; echo receive >> steps
  $ serve --talk steps; echo "silent $address ops password" >> list
  $ (with_hosts varnel watch --elements list "two=$two" --type prompt > lines) & pid=$!
  $ for _ in $(seq 900); do if [ "$(wc -l < lines)" -ge 4 ]; then break; fi; sleep 0.05; done
  $ kill "$pid"
  $ wait "$pid"
  $ sed -E 's/,"[a-z_]+":null//g; s/,"received":"[^"]*"//; s/("retry_in":)[0-9.]+/\1R/' lines | sort
  {"event":"down","source":"hanging","reason":"no connection within 30 seconds","retry_in":R}
  {"event":"login_refused","source":"silent","reason":"no answer to the log-in","user":"ops","retry_in":R}
  {"event":"up","source":"silent"}
  {"event":"up","source":"two"}
