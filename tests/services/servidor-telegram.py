#!/usr/bin/env python3
"""Plays the bot interface over HTTPS for a test: servidor-telegram.py CERTIFICATE KEY LOG

Prints its port. Each request is a line of the log: path, a blank, body. The chat decides the answer: "302", "401" and
"500" are those states, "lento" waits for longer than anyone should, "corta" hangs up; anything else is taken.
"""
import http.server
import json
import ssl
import sys
import time


class Bot(http.server.BaseHTTPRequestHandler):
    def do_POST(self) -> None:
        cuerpo = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        with open(sys.argv[3], "ab") as registro:
            registro.write(self.path.encode() + b" " + self.headers["Content-Type"].encode() + b" " + cuerpo + b"\n")
        chat = json.loads(cuerpo).get("chat_id", "")
        if chat == "lento":
            time.sleep(60)
        if chat == "corta":
            self.connection.close()
            return
        self.send_response(int(chat) if chat in ("302", "401", "500") else 200)
        self.send_header("Location", "/otro-sitio")
        self.send_header("Content-Type", "application/json")
        self.end_headers()
        self.wfile.write(b'{"ok":true}')

    def log_message(self, *_) -> None:
        pass


servidor = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Bot)
servidor.daemon_threads = True
contexto = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
contexto.load_cert_chain(sys.argv[1], sys.argv[2])
servidor.socket = contexto.wrap_socket(servidor.socket, server_side=True)
print(servidor.server_address[1], flush=True)
servidor.serve_forever()
