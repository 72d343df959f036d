#!/usr/bin/env python3
"""Frees a phone whose copies stand in places that are not to be trusted: sitios-de-copias.py ENGINE SIMULATOR

A disk that has lost what memory still holds; the phone itself seen as a folder, through a driver in user space, through a
layer over it, and below a true folder. Each needs something of the system: a loop device, a mount, /dev/fuse. What
cannot be had here is said and left out; status 77 when nothing could be had. Run it by `unshare --mount`.
"""
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

UDID = "00008120-000A1B2C3D4C1E9A"
CUANTAS = 40


class NoSePuede(Exception):
    pass


def mandar(*orden) -> None:
    hecho = subprocess.run([str(o) for o in orden], capture_output=True, text=True, check=False)
    if hecho.returncode != 0:
        raise NoSePuede(f"{orden[0]}: {hecho.stderr.strip()[:120]}")


class Telefono:
    def __init__(self, motor: str, simulador: str, raiz: pathlib.Path):
        self.motor = motor
        estado = raiz / "estado.json"
        estado.write_text(json.dumps({"telefonos": [{"udid": UDID}]}))
        orden = [simulador, "--socket", raiz / "usbmuxd", "--estado", estado, "--contenido", raiz / "contenido",
                 "--tamano", "minimo"]
        self.proceso = subprocess.Popen(orden, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        if "LISTO" not in self.proceso.stdout.readline():
            sys.exit("el teléfono simulado no arrancó")
        os.environ["USBMUXD_SOCKET_ADDRESS"] = f"UNIX:{raiz}/usbmuxd"
        self.media = raiz / "contenido" / UDID / "media"
        self.carrete = self.media / "DCIM"

    def carrete_nuevo(self) -> None:
        shutil.rmtree(self.carrete, ignore_errors=True)
        (self.carrete / "100APPLE").mkdir(parents=True)
        for n in range(CUANTAS):
            (self.carrete / f"100APPLE/IMG_{n:04}.JPG").write_bytes(random.randbytes(60_000 + 1000 * n))

    def mandar(self, orden: str, carpeta: pathlib.Path) -> tuple[int, dict, str]:
        entorno = dict(os.environ, CONFIRMADO="SI" if orden == "liberar" else "NO")
        hecho = subprocess.run([self.motor, orden, UDID, carpeta], env=entorno, capture_output=True, text=True,
                               timeout=120, check=False)
        avisos = {a["tipo"]: a for a in map(json.loads, filter(lambda l: l.startswith("{"), hecho.stdout.splitlines()))}
        return hecho.returncode, avisos, hecho.stdout

    def quedan(self) -> int:
        return sum(1 for f in self.carrete.rglob("*") if f.is_file())


def exigir(que: str, bien: bool, salida: str) -> None:
    if not bien:
        raise AssertionError(f"{que}\n{salida[-1500:]}")


def disco_que_ha_perdido(telefono: Telefono, raiz: pathlib.Path) -> None:
    """4 KiB of each of 40 copies are destroyed beneath the file system, which still remembers them whole."""
    imagen, montado = raiz / "imagen", raiz / "disco"
    montado.mkdir()
    with open(imagen, "wb") as vacia:
        vacia.truncate(256 << 20)
    mandar("mkfs.ext4", "-q", imagen)
    mandar("mount", "-o", "loop", imagen, montado)
    try:
        fotos = montado / "Fotos"
        codigo, _, salida = telefono.mandar("copiar", fotos)
        exigir("copiar", codigo == 0, salida)
        os.sync()
        with open(imagen, "r+b") as disco:
            todo = disco.read()
            for foto in sorted(fotos.glob("100APPLE/*.JPG")):
                donde = todo.find(foto.read_bytes()[8192:12288])
                exigir("la copia está en el disco", donde >= 0, str(foto))
                disco.seek(donde)
                disco.write(bytes(4096))
            disco.flush()
            os.fsync(disco.fileno())
        _, avisos, salida = telefono.mandar("liberar", fotos)
        exigir("no se borra ninguna", telefono.quedan() == CUANTAS, salida)
        exigir("y se dice", avisos["fin"]["siguen_ahi"] == CUANTAS, salida)
    finally:
        mandar("umount", montado)


def telefono_por_fuse(telefono: Telefono, raiz: pathlib.Path) -> None:
    """The roll through a driver in user space that nobody has heard of."""
    fotos = raiz / "fuse"
    fotos.mkdir()
    programa = ("import fusepy, os, sys\n"
                "class Paso(fusepy.Operations):\n"
                "    def __init__(self, raiz): self.raiz = raiz\n"
                "    def getattr(self, ruta, fh=None):\n"
                "        try: s = os.lstat(self.raiz + ruta)\n"
                "        except OSError as e: raise fusepy.FuseOSError(e.errno)\n"
                "        return {k: getattr(s, k) for k in ('st_mode', 'st_size', 'st_mtime', 'st_nlink', 'st_uid')}\n"
                "    def readdir(self, ruta, fh): return ['.', '..'] + os.listdir(self.raiz + ruta)\n"
                "    def open(self, ruta, flags): return os.open(self.raiz + ruta, flags)\n"
                "    def create(self, ruta, modo, fi=None): return os.open(self.raiz + ruta, os.O_RDWR | os.O_CREAT, modo)\n"
                "    def read(self, ruta, n, donde, fh): return os.pread(fh, n, donde)\n"
                "    def write(self, ruta, d, donde, fh): return os.pwrite(fh, d, donde)\n"
                "    def truncate(self, ruta, n, fh=None): os.truncate(self.raiz + ruta, n)\n"
                "    def unlink(self, ruta): os.unlink(self.raiz + ruta)\n"
                "    def release(self, ruta, fh): os.close(fh)\n"
                "fusepy.FUSE(Paso(sys.argv[1]), sys.argv[2], foreground=True, subtype='otro-iphone')\n")
    hijo = subprocess.Popen(["/usr/bin/python3", "-c", programa, telefono.carrete, fotos],
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        for _ in range(50):
            if os.path.ismount(fotos) or hijo.poll() is not None:
                break
            time.sleep(0.1)
        if not os.path.ismount(fotos):
            raise NoSePuede("no hay fusepy o /dev/fuse")
        codigo, avisos, salida = telefono.mandar("liberar", fotos)
        exigir("hay qué borrar", avisos["plan"]["a_borrar"] == CUANTAS, salida)
        exigir("no se borra ninguna", telefono.quedan() == CUANTAS and codigo == 1, salida)
        exigir("y se dice", "fuse.otro-iphone" in avisos["error"]["motivo"], salida)
    finally:
        if os.path.ismount(fotos):
            mandar("umount", "-l", fotos)
        hijo.terminate()
        hijo.wait(10)


def telefono_bajo_la_carpeta(telefono: Telefono, raiz: pathlib.Path) -> None:
    """A folder of this computer with the roll mounted in it, on the same device."""
    fotos = raiz / "Fotos"
    (fotos / "iPhone").mkdir(parents=True)
    mandar("mount", "--bind", telefono.carrete, fotos / "iPhone")
    try:
        _, avisos, salida = telefono.mandar("liberar", fotos)
        exigir("hay qué borrar", avisos["plan"]["a_borrar"] == CUANTAS, salida)
        exigir("no se borra ninguna", telefono.quedan() == CUANTAS, salida)
        exigir("y se dice", avisos["fin"]["sin_prueba"] == CUANTAS, salida)
    finally:
        mandar("umount", fotos / "iPhone")


def telefono_bajo_una_capa(telefono: Telefono, raiz: pathlib.Path) -> None:
    """What is written stays here and what is read is the phone's: no file made there shows in the phone."""
    capa, trabajo, fotos = raiz / "capa", raiz / "trabajo", raiz / "junto"
    for carpeta in (capa, trabajo, fotos):
        carpeta.mkdir()
    mandar("mount", "-t", "overlay", "overlay", "-o",
           f"lowerdir={telefono.carrete},upperdir={capa},workdir={trabajo}", fotos)
    try:
        codigo, avisos, salida = telefono.mandar("liberar", fotos)
        exigir("hay qué borrar", avisos["plan"]["a_borrar"] == CUANTAS, salida)
        exigir("para en la primera", telefono.quedan() >= CUANTAS - 1 and codigo == 1, salida)
        exigir("y se dice", "ha dejado de leerse" in avisos["error"]["motivo"] and avisos["cortado"]["borrados"] == 1,
               salida)
    finally:
        mandar("umount", fotos)


def main() -> int:
    mal, hechos = 0, 0
    casos = [disco_que_ha_perdido, telefono_por_fuse, telefono_bajo_la_carpeta, telefono_bajo_una_capa]
    for caso in casos:
        with tempfile.TemporaryDirectory() as carpeta:
            raiz = pathlib.Path(carpeta)
            telefono = Telefono(sys.argv[1], sys.argv[2], raiz)
            try:
                telefono.carrete_nuevo()
                caso(telefono, raiz)
                hechos += 1
                print(f"{caso.__name__}: bien")
            except NoSePuede as motivo:
                print(f"{caso.__name__}: aquí no se puede ({motivo})")
            except AssertionError as fallo:
                mal += 1
                print(f"{caso.__name__}: MAL: {fallo}")
            finally:
                telefono.proceso.stdin.close()
                telefono.proceso.wait(20)
    return 1 if mal else 0 if hechos else 77


if __name__ == "__main__":
    sys.exit(main())
