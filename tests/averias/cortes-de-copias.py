#!/usr/bin/env python3
"""Backups of a phone, cut short at random: cortes-de-copias.py PROGRAM SIMULATOR RUNS [SEED]

Half of them plain, half encrypted. A good backup comes first; each run after it ends by a kill, a request to end, the
cable out, a phone that gives up or is locked, or a disk that another program fills. After each one the backup that was
there must be there still, every byte of it, with its note; or, where the new one was faster, both must. Runs in a mount
namespace of its own (see con-montajes).
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
import time

UDID = "00008120-000A1B2C3D4C1E9A"
FINALES = ["matar", "pedir que acabe", "cable", "cable en un fichero", "el teléfono se rinde", "bloqueado", "disco lleno"]
SERVICIO = "com.apple.mobilebackup2"
SEGUNDOS = 120


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
        os.environ["PYMOBILEDEVICE3_USBMUX"] = f"{raiz}/usbmuxd"

    def orden(self, **orden) -> bool:
        self.proceso.stdin.write(json.dumps(orden) + "\n")
        self.proceso.stdin.flush()
        return json.loads(self.proceso.stdout.readline())["bien"]

    def en_orden(self) -> None:
        self.orden(orden="conectar")
        self.orden(orden="desbloquear")
        self.orden(orden="fallar", peticion="", error=None)
        self.orden(orden="frenar", bytes_por_segundo=0)


def sumas(carpeta: pathlib.Path) -> dict[str, str]:
    """All but our own note, which a new look at the backup may write anew."""
    return {
        str(f.relative_to(carpeta)): hashlib.sha1(f.read_bytes()).hexdigest()
        for f in carpeta.rglob("*")
        if f.is_file() and not f.name.startswith(".vellora-")
    }


class Prueba:
    def __init__(self, programa: str, telefono: Telefono, disco: pathlib.Path, azar: random.Random):
        self.programa, self.telefono, self.disco, self.azar = programa, telefono, disco, azar
        self.males: list[str] = []
        self.cuenta: collections.Counter = collections.Counter()

    @property
    def copias(self) -> pathlib.Path:
        return next(self.disco.glob("Vellora/*/Copias de seguridad"), self.disco / "ninguna")

    def lanzar(self) -> subprocess.Popen:
        return subprocess.Popen([self.programa, "copia", "--sin-cifrar"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                env=dict(os.environ, HOME=str(self.disco)))

    def entera(self) -> bool:
        self.telefono.en_orden()
        return self.lanzar().wait(timeout=SEGUNDOS) == 0

    def cortada(self, final: str) -> None:
        if final == "cable en un fichero":
            self.telefono.orden(orden="cortar", servicio=SERVICIO, bytes=self.azar.randint(0, 1_500_000))
        elif final == "el teléfono se rinde":
            self.telefono.orden(orden="fallar", peticion="Backup", error=205, veces=1,
                                tras_ficheros=self.azar.randint(1, 60))
        elif final == "bloqueado":
            self.telefono.orden(orden="fallar", peticion="Backup", error=208, veces=1)
        elif final == "disco lleno":
            self.telefono.orden(orden="ignorar_espacio_del_ordenador", valor=True)
        self.telefono.orden(orden="frenar", servicio=SERVICIO, bytes_por_segundo=self.azar.choice((600_000, 2_000_000)))
        hijo = self.lanzar()
        time.sleep(1 + self.azar.random() * 3)
        if final == "cable":
            self.telefono.orden(orden="desconectar")
        elif final == "disco lleno":
            with open(self.disco / "estorbo", "wb") as estorbo:
                try:
                    os.posix_fallocate(estorbo.fileno(), 0, max(1, shutil.disk_usage(self.disco).free))
                except OSError:
                    pass
        elif final in ("matar", "pedir que acabe") and hijo.poll() is None:
            hijo.send_signal(signal.SIGKILL if final == "matar" else signal.SIGTERM)
        try:
            codigo = hijo.wait(timeout=SEGUNDOS)
        except subprocess.TimeoutExpired:
            hijo.kill()
            hijo.wait()
            codigo = -1
            self.males.append(f"{final}: no acabó")
        (self.disco / "estorbo").unlink(missing_ok=True)
        self.cuenta["fallidas" if codigo != 0 else "acabadas"] += 1

    def revisar(self, final: str, antes: dict[str, str]) -> None:
        copia = self.copias / UDID
        anteriores = [sumas(una) for una in self.copias.glob(f"Copias anteriores/*/{UDID}")]
        esta = sumas(copia) if copia.exists() else {}
        con_nota = (copia / ".vellora-comprobada").exists()
        if esta == antes and con_nota:
            return
        if antes not in anteriores or len(esta) < len(antes) // 2 or not con_nota:
            self.males.append(f"{final}: la copia que había ya no está como estaba ({len(esta)} de {len(antes)})")

    def correr(self, veces: int) -> None:
        for vez in range(veces):
            final = self.azar.choice(FINALES)
            antes = sumas(self.copias / UDID)
            self.cortada(final)
            self.revisar(final, antes)
            self.telefono.en_orden()
            self.cuenta[final] += 1
            if self.males:
                return
            if vez % 20 == 19 and not self.entera():
                self.males.append("después ya no sale ninguna")


def main() -> int:
    programa, simulador, veces = sys.argv[1], sys.argv[2], int(sys.argv[3])
    semilla = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1 << 30)
    azar = random.Random(semilla)
    males = 0
    with tempfile.TemporaryDirectory() as carpeta:
        raiz = pathlib.Path(carpeta)
        telefono = Telefono(simulador, raiz)
        for cifrada in (False, True):
            disco = raiz / ("cifrada" if cifrada else "llana")
            disco.mkdir()
            if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=48m", "tmpfs", disco], check=False).returncode:
                print("Aquí no se puede montar un disco para llenarlo: se deja")
                return 77
            telefono.orden(orden="clave_de_copia", clave="rosquillas" if cifrada else "", rondas=10)
            prueba = Prueba(programa, telefono, disco, azar)
            if prueba.entera():
                prueba.correr(veces // 2)
            else:
                prueba.males.append("ni la primera")
            print(f"{'Cifradas' if cifrada else 'Sin cifrar'}: {dict(prueba.cuenta)}; mal: {prueba.males or 'ninguna'}")
            males += len(prueba.males)
            subprocess.run(["umount", "-l", disco], check=False)
        telefono.proceso.stdin.close()
        telefono.proceso.wait()
    if males:
        print(f"semilla {semilla}")
    return 1 if males else 0


if __name__ == "__main__":
    sys.exit(main())
