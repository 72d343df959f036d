#!/usr/bin/env python3
"""A person at the keyboard for polkit's own agent: agente.py PID PASSWORD. Says LISTO when the agent has registered, and
answers every question with the password until it is ended."""
import os
import pty
import sys
import time

aviso_leer, aviso_escribir = os.pipe()
os.set_inheritable(aviso_escribir, True)
hijo, terminal = pty.fork()
if hijo == 0:
    os.execvp("pkttyagent", ["pkttyagent", "--process", sys.argv[1], "--notify-fd", str(aviso_escribir)])
os.close(aviso_escribir)
os.read(aviso_leer, 1)  # closed by the agent once it has registered
print("LISTO", flush=True)
visto = b""
while True:
    try:
        leido = os.read(terminal, 4096)
    except OSError:
        break
    visto += leido
    if b"assword:" in visto:
        visto = b""
        time.sleep(0.1)
        os.write(terminal, sys.argv[2].encode() + b"\n")
