"""What the measures share: a simulated phone, runs with their time and memory, and the words of a ratio."""

import json
import os
import pathlib
import resource
import shutil
import signal
import statistics
import subprocess
import sys
import time

UDID = "00008120-000A1B2C3D4C1E9A"


class Casa:
    """A home folder of its own, with nothing of the owner's."""

    def __init__(self, raiz):
        self.raiz = pathlib.Path(raiz)
        shutil.rmtree(self.raiz, ignore_errors=True)
        (self.raiz / "rt").mkdir(parents=True, mode=0o700)
        self.entorno = dict(
            os.environ,
            HOME=str(self.raiz),
            XDG_RUNTIME_DIR=str(self.raiz / "rt"),
            XDG_CONFIG_HOME=str(self.raiz / ".config"),
            XDG_DATA_HOME=str(self.raiz / ".local/share"),
            XDG_CACHE_HOME=str(self.raiz / ".cache"),
            TZ="Europe/Madrid",
            LC_ALL="C.UTF-8",
            QT_QPA_PLATFORM="offscreen",
            QT_QUICK_BACKEND="software",
        )
        for sobra in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS"):
            self.entorno.pop(sobra, None)


class ServidorGrafico:
    """An X server of its own, that the programs of `casa` draw on while it lives."""

    def __init__(self, casa):
        self.casa = casa
        lee, escribe = os.pipe()
        orden = ["Xvfb", "-displayfd", str(escribe), "-screen", "0", "1920x1200x24", "-nolisten", "tcp"]
        self.proceso = subprocess.Popen(orden, pass_fds=[escribe], stderr=subprocess.DEVNULL)
        os.close(escribe)
        with os.fdopen(lee) as numero:
            self.pantalla = numero.readline().strip()
        if not self.pantalla:
            sys.exit("Xvfb no arrancó")

    def __enter__(self):
        self.antes = self.casa.entorno["QT_QPA_PLATFORM"]
        self.casa.entorno.update(QT_QPA_PLATFORM="xcb", DISPLAY=f":{self.pantalla}")
        return self

    def __exit__(self, *_):
        self.casa.entorno["QT_QPA_PLATFORM"] = self.antes
        del self.casa.entorno["DISPLAY"]
        self.proceso.terminate()
        self.proceso.wait()


class Telefono:
    """The simulated phone as a process; the tools of `casa` talk to it while it lives."""

    def __init__(self, arbol, casa, contenido, tamano):
        enchufe = casa.raiz / "usbmuxd"
        estado = casa.raiz / "estado.json"
        telefono = {"udid": UDID, "nombre": "iPhone de Marta", "producto": "iPhone15,2", "version": "17.5.1"}
        estado.write_text(json.dumps({"telefonos": [telefono]}))
        orden = [str(busca(arbol, "iphone-simulado")), "--socket", str(enchufe), "--estado", str(estado)]
        orden += ["--contenido", str(contenido), "--tamano", tamano]
        self.proceso = subprocess.Popen(orden, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        if "LISTO" not in self.proceso.stdout.readline():
            sys.exit("el teléfono simulado no arrancó")
        casa.entorno["USBMUXD_SOCKET_ADDRESS"] = f"UNIX:{enchufe}"
        casa.entorno["PYMOBILEDEVICE3_USBMUX"] = str(enchufe)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.proceso.stdin.close()
        self.proceso.wait(20)


def busca(arbol, nombre):
    for ruta in sorted(pathlib.Path(arbol).rglob(nombre)):
        if ruta.is_file() and os.access(ruta, os.X_OK):
            return ruta
    sys.exit(f"no está construido: {nombre}")


def telefono_en_disco(arbol, raiz):
    """The contents of a small phone, made anew."""
    carpeta = pathlib.Path(raiz) / "telefono"
    orden = [str(busca(arbol, "phone-contents-generator")), "--carpeta", str(carpeta), "--tamano", "minimo"]
    subprocess.run(orden, stdout=subprocess.DEVNULL, check=True)
    return carpeta


def copia_simulada(arbol, raiz, nombre, *opciones):
    """A backup of the phone of `raiz`, as the phone leaves it; of a small one when there is none yet."""
    telefono = pathlib.Path(raiz) / "telefono"
    if not telefono.exists():
        telefono_en_disco(arbol, raiz)
    copia = pathlib.Path(raiz) / nombre
    orden = [str(busca(arbol, "copia-simulada")), "--telefono", str(telefono), "--copia", str(copia), *opciones]
    subprocess.run(orden, stdout=subprocess.DEVNULL, check=True)
    return copia


def vellora(arbol):
    return pathlib.Path(arbol) / "Vellora.app/Contents/MacOS/vellora"


def corre(orden, entorno):
    """Seconds, and peak memory in MiB of the program itself (not of what it started)."""
    principio = time.monotonic()
    hijo = subprocess.Popen(orden, env=entorno, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, estado, uso = os.wait4(hijo.pid, 0)
    hijo.returncode = os.waitstatus_to_exitcode(estado)
    if hijo.returncode != 0:
        sys.exit(f"{orden[0]} terminó con {hijo.returncode}")
    return time.monotonic() - principio, uso.ru_maxrss / 1024


def razon(nombre, nuestro, suyo, meta, unidad):
    """One line with the ratio of two medians; the pairs were taken in turns in this run."""
    a, b = statistics.median(nuestro), statistics.median(suyo)
    print(f"{nombre}: {a / b:.3f} veces ({a:.2f} {unidad} frente a {b:.2f} {unidad}; meta: {meta})", flush=True)
