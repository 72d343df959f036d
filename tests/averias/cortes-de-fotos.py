#!/usr/bin/env python3
"""Copies photos off a phone, frees it and recovers them from a backup, cut short at random: cortes-de-fotos.py ENGINE SIMULATOR MUERE RUNS [SEED]

Each run ends by a kill (at a step that lasts on the disk, or at any moment), a request to end, the cable out (inside a
file, or at any moment), a disk that fills up, a second copy into the same folder, or by itself. After each, every photo must exist whole on the phone or
under its name in the folder; nothing half may stand under a name; and a run that nobody cuts brings no byte that was
not missing. Run it by `unshare --mount`, as root where that is possible, so that the folder can have a disk of its own
to fill up. A disk that is memory is filled by copies alone, since nothing is freed against it; without any, that ending
is left out.
"""
import collections
import hashlib
import json
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

UDID = "00008120-000A1B2C3D4C1E9A"
FINALES = ["segundo programa", "matar", "matar en un paso", "pedir que acabe", "cable en un fichero", "cable", "ninguno"]
CON_OTRO_HILO = ("matar", "pedir que acabe", "cable", "disco lleno", "segundo programa")
DISCO = 400  # MiB


class Telefono:
    def __init__(self, simulador: str, raiz: pathlib.Path):
        estado = raiz / "estado.json"
        estado.write_text(json.dumps({"telefonos": [{"udid": UDID}]}))
        orden = [simulador, "--socket", raiz / "usbmuxd", "--estado", estado, "--contenido", raiz / "contenido",
                 "--tamano", "minimo"]
        self.proceso = subprocess.Popen(orden, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        if "LISTO" not in self.proceso.stdout.readline():
            sys.exit("el teléfono simulado no arrancó")
        os.environ["USBMUXD_SOCKET_ADDRESS"] = f"UNIX:{raiz}/usbmuxd"
        self.carrete = raiz / "contenido" / UDID / "media/DCIM"

    def orden(self, **orden) -> bool:
        self.proceso.stdin.write(json.dumps(orden) + "\n")
        self.proceso.stdin.flush()
        return json.loads(self.proceso.stdout.readline())["bien"]


def contenidos(carpeta: pathlib.Path) -> dict[str, tuple[str, int]]:
    """What stands there under final names: SHA-1 and size of each file."""
    return {
        str(f.relative_to(carpeta)): (hashlib.sha1(f.read_bytes()).hexdigest(), f.stat().st_size)
        for f in carpeta.rglob("*")
        if f.is_file() and not f.name.startswith(".vellora-") and f.name != "Borradas del iPhone.txt"
    }


def carrete_nuevo(carrete: pathlib.Path, azar: random.Random) -> None:
    """Live Photos, edits with their side file, videos, and names that a former roll had too."""
    shutil.rmtree(carrete, ignore_errors=True)
    for n in range(14):
        carpeta = carrete / f"{100 + n % 3}APPLE"
        carpeta.mkdir(parents=True, exist_ok=True)
        nombres = {0: [".HEIC", ".MOV"], 1: [".JPG", ".AAE", "E.JPG"], 2: [".MOV"]}.get(n % 4, [".JPG"])
        for fin in nombres:
            nombre = f"IMG_E{n:04}.JPG" if fin == "E.JPG" else f"IMG_{n:04}{fin}"
            largo = azar.choice((900, 30_000, 300_000, 2_500_000 if fin == ".MOV" else 120_000))
            (carpeta / nombre).write_bytes(azar.randbytes(largo))


class Prueba:
    def __init__(self, motor: str, muere: str, telefono: Telefono, azar: random.Random):
        self.motor, self.muere, self.telefono, self.azar = motor, muere, telefono, azar
        self.males: list[str] = []
        self.cuenta: collections.Counter = collections.Counter()

    def lanzar(self, orden: str, **mas) -> subprocess.Popen:
        entorno = dict(os.environ, CONFIRMADO="SI" if orden == "liberar" else "NO", **mas)
        palabras = [UDID, self.copias, self.fotos] if orden == "recuperar-carrete" else [UDID, self.fotos]
        return subprocess.Popen([self.motor, orden, *palabras], env=entorno, stdout=subprocess.PIPE, text=True)

    def llenar(self) -> None:
        """Somebody else takes the room that was there when the copy began."""
        libre = shutil.disk_usage(self.disco).free - self.azar.randint(0, 3_000_000)
        with open(self.disco / "estorbo", "wb") as estorbo:
            try:
                os.posix_fallocate(estorbo.fileno(), 0, max(1, libre))
            except OSError:
                pass  # the copy was faster

    def cortada(self, orden: str, final: str) -> None:
        azar = self.azar
        paso = str(azar.randint(1, 160))
        if final == "cable en un fichero":
            self.telefono.orden(orden="cortar", servicio="com.apple.afc", bytes=azar.randint(0, 2_000_000))
        hijo = self.lanzar(orden, **({"LD_PRELOAD": self.muere, "MUERE_EN": paso} if final == "matar en un paso" else {}))
        def despues():
            time.sleep(azar.random() ** 2 * 0.25)
            if final == "cable":
                self.telefono.orden(orden="desconectar")
            elif final == "disco lleno":
                self.llenar()
            elif final == "segundo programa":
                self.lanzar("copiar").communicate(timeout=60)
            elif hijo.poll() is None:
                hijo.send_signal(signal.SIGKILL if final == "matar" else signal.SIGTERM)
        aparte = threading.Thread(target=despues) if final in CON_OTRO_HILO else None
        if aparte:
            aparte.start()
        try:
            hijo.communicate(timeout=60)
        except subprocess.TimeoutExpired:
            hijo.kill()
            hijo.communicate()
            self.males.append(f"{orden}, {final}: no acaba")
        if aparte:
            aparte.join()
        self.cuenta[f"{orden}, {final}: {'entera' if hijo.returncode == 0 else 'cortada'}"] += 1
        (self.disco / "estorbo").unlink(missing_ok=True)
        self.telefono.orden(orden="conectar")

    def revisar(self, que: str, originales: dict[str, tuple[str, int]], de_antes: set[str]) -> None:
        en_el_telefono, en_la_carpeta = contenidos(self.telefono.carrete), contenidos(self.fotos)
        sumas = {suma for suma, _ in en_la_carpeta.values()}
        for nombre, (suma, _) in originales.items():
            if en_el_telefono.get(nombre, ("",))[0] != suma and suma not in sumas:
                self.males.append(f"{que}: {nombre} no está en ninguna parte")
        buenas = {suma for suma, _ in originales.values()} | de_antes
        for nombre, (suma, _) in en_la_carpeta.items():
            if suma not in buenas:
                self.males.append(f"{que}: {nombre} está a medias")
        if de_antes - sumas:
            self.males.append(f"{que}: se ha perdido una foto de antes")

    def anotadas(self) -> set[str]:
        """The phone's files whose last note is of this very file."""
        notas = self.fotos / f".vellora-huellas-{UDID}"
        lineas = [linea.split("\t") for linea in notas.read_text().splitlines()] if notas.exists() else []
        ultimas = {partes[3]: partes for partes in lineas if len(partes) == 11}
        def es_esta(nombre: str, partes: list[str]) -> bool:
            suya = self.telefono.carrete / nombre
            return suya.exists() and suya.stat().st_mtime_ns == int(partes[6]) and partes[4] != ""
        return {nombre for nombre, partes in ultimas.items() if es_esta(nombre, partes)}

    def hacer_copia(self, copiadora: pathlib.Path, telefono: pathlib.Path) -> bool:
        """A backup of the phone as it is now, to recover from."""
        self.copias = telefono.parent.parent / "copias"
        shutil.rmtree(self.copias, ignore_errors=True)
        orden = [copiadora, "--telefono", telefono, "--copia", self.copias / UDID]
        return copiadora.exists() and subprocess.run(orden, stdout=subprocess.DEVNULL, check=False).returncode == 0

    def sin_cortes(self, originales: dict[str, tuple[str, int]]) -> None:
        """A copy that ends brings what is missing and nothing else."""
        for _ in range(4):  # a cut that was ordered before and did not come may come now
            hay = {suma for suma, _ in contenidos(self.fotos).values()}
            anotadas = self.anotadas()
            # Of what was named but not noted, or brought by a recovery, only the phone's bytes tell that it is there.
            falta = sum(largo for n, (_, largo) in contenidos(self.telefono.carrete).items()
                        if originales[n][0] not in hay or n not in anotadas)
            hijo = self.lanzar("copiar")
            salida, _ = hijo.communicate(timeout=60)
            self.telefono.orden(orden="conectar")
            fin = [a for a in map(json.loads, filter(lambda l: l.startswith("{"), salida.splitlines())) if a["tipo"] == "fin"]
            if hijo.returncode == 0 and fin:
                if fin[0]["bytes"] > falta:
                    self.males.append(f"copiar otra vez: {fin[0]['bytes']} bytes y solo faltaban {falta}")
                return
        self.males.append(f"copiar: no acaba bien ni sin cortes: {salida[-300:]}")


def montar(disco: pathlib.Path, imagen: pathlib.Path) -> str:
    """A disk of its own: "disco", or "memoria" where no other can be had, or nothing."""
    imagen.write_bytes(b"")
    os.truncate(imagen, DISCO << 20)
    if (subprocess.run(["mkfs.ext4", "-q", imagen], check=False).returncode == 0
            and subprocess.run(["mount", "-o", "loop", imagen, disco], stderr=subprocess.DEVNULL, check=False).returncode == 0):
        return "disco"
    memoria = ["mount", "-t", "tmpfs", "-o", f"size={DISCO}m", "tmpfs", disco]
    return "memoria" if subprocess.run(memoria, check=False).returncode == 0 else ""


def main() -> int:
    motor, simulador, muere, vueltas = *sys.argv[1:4], int(sys.argv[4])
    semilla = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1 << 30)
    print(f"Semilla {semilla}", flush=True)
    with tempfile.TemporaryDirectory() as carpeta:
        raiz = pathlib.Path(carpeta)
        disco = raiz / "disco"
        disco.mkdir()
        tipo = montar(disco, raiz / "imagen")
        telefono = Telefono(simulador, raiz)
        try:
            copiadora = next(pathlib.Path(simulador).parent.rglob("copia-simulada"), pathlib.Path("no-hay"))
            mal = probar(motor, muere, telefono, disco, tipo, vueltas, random.Random(semilla), copiadora)
        finally:
            telefono.proceso.stdin.close()
            telefono.proceso.wait(20)
            if tipo:
                subprocess.run(["umount", disco], check=False)
    return mal


def probar(motor, muere, telefono, disco, tipo, vueltas, azar, copiadora) -> int:
    prueba = Prueba(motor, muere, telefono, azar)
    aparte = disco.with_name("aparte")
    hechas, vida = 0, 0
    while hechas < vueltas and not prueba.males:
        # Every few lives the folder begins anew; in between, a new roll takes the names of the last one.
        if vida % 3 == 0:
            en_memoria = tipo == "memoria" and vida % 2 == 0
            prueba.disco = disco if tipo == "disco" or en_memoria else aparte
            prueba.fotos = prueba.disco / "Fotos"
            shutil.rmtree(prueba.fotos, ignore_errors=True)
            prueba.fotos.mkdir(parents=True)
            ordenes = ("copiar",) if en_memoria else ("copiar", "copiar", "liberar")
            finales = FINALES + (["disco lleno"] if prueba.disco == disco else [])
        vida += 1
        carrete_nuevo(telefono.carrete, azar)
        originales = contenidos(telefono.carrete)
        de_antes = {suma for suma, _ in contenidos(prueba.fotos).values()}
        hay_copia = prueba.hacer_copia(copiadora, telefono.carrete.parent.parent)
        for _ in range(azar.randint(4, 12)):
            orden = azar.choice(ordenes + ("recuperar-carrete",) * hay_copia)
            final = azar.choice(finales)
            prueba.cortada(orden, final)
            prueba.revisar(f"{orden}, {final}", originales, de_antes)
            hechas += 1
            if azar.random() < 0.25:
                prueba.sin_cortes(originales)
                prueba.revisar("copiar hasta el final", originales, de_antes)
    for que, veces in sorted(prueba.cuenta.items()):
        print(f"  {que}: {veces}")
    cortadas = sum(v for que, v in prueba.cuenta.items() if que.endswith("cortada"))
    print(f"Cortes: {hechas} vueltas, {cortadas} cortadas, {len(prueba.males)} mal")
    print("\n".join(prueba.males[:20]))
    return 1 if prueba.males or cortadas < hechas // 5 else 0


if __name__ == "__main__":
    sys.exit(main())
