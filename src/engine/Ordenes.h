#pragma once

#include "engine/Avisos.h"

#include <QStringList>

/// The commands of the engine. Each takes its arguments, without its own name, and gives the exit status: 0 when the
/// work is done, anything else after an "error" notice.
namespace vellora::motor
{

/// Finds the command that stands first among the arguments, checks that none of its arguments is missing, and runs it.
int ejecutarOrden(const QStringList &argumentos, Avisos &avisar);

/// The one guard of everything that destroys: a command that finds no confirmation only plans. The program sets the
/// variable CONFIRMADO to SI after the owner's own answer; any other value counts for nothing.
bool confirmado();

/// "extraer" UDID COPIAS DESTINO [agenda]: lays out what the extractors read of the backup of that phone; with the word
/// "agenda", the address book alone. COPIAS is the folder of the backups or that of one backup. Notices: "total" n,
/// "progreso" hechos copiados, "fin" copiados fallidos bytes.
int extraer(const QStringList &argumentos, Avisos &avisar);

/// "bateria" UDID: one notice "bateria": ciclos; maxima, disenio, nominal, actual (mAh); temperatura (hundredths of a
/// degree Celsius); voltaje (mV); minutos_restantes (0 when not known); desconexiones; cargando, enchufado, llena,
/// critica.
int bateria(const QStringList &argumentos, Avisos &avisar);
/// "bateria-historial" UDID FICHERO: adds today's health to the list in the file, a JSON list of fecha (dd/MM/yyyy) and
/// salud (percent), or replaces that of today. One notice "historial": mediciones, salud, ciclos, desde, salud_inicial.
int bateriaHistorial(const QStringList &argumentos, Avisos &avisar);

/// "comprobar-copia" UDID COPIA [REHUSADOS]: whether a finished backup is whole, ciphered or not; the password comes
/// from the secret store. REHUSADOS: how many files the phone itself refused to send while it was made, which may be
/// absent. Notices: "total" n, "progreso" hechos, then "comprobacion" estado ("entera", "rota" or "sin_comprobar"),
/// cifrada, disco_lleno and detalles, a list of sentences. The exit status is 0 whatever was found, and another one
/// only without a notice.
int comprobarCopia(const QStringList &argumentos, Avisos &avisar);

/// "contrasenas" UDID COPIA: the saved passwords of the phone, out of that backup, which is opened with the password
/// that the secret store has of it. Notices: "contrasenas" lista, as many as it takes, whose elements have donde, tipo
/// ("wifi", "internet" or "app"), usuario and clave; then "fin" cuantas, cerradas (bound to the phone), sin_texto.
/// "sin_cifrar" alone where the backup is not encrypted. Passwords go to no file, not even a temporary one.
int contrasenas(const QStringList &argumentos, Avisos &avisar);

/// "copiar" UDID DESTINO: brings what of the camera roll is not yet in the folder. Notices: "total" n, "progreso"
/// hechos copiados saltados bytes fichero, "fallo" fichero motivo, "fin" copiados saltados fallos bytes. Not well with
/// a failure among them.
int copiar(const QStringList &argumentos, Avisos &avisar);
/// "copiar-elegidas" UDID LISTA DESTINO: the same of the files whose paths are in the list, a line each.
int copiarElegidas(const QStringList &argumentos, Avisos &avisar);
// Deletions that do not come to their end (the owner's stop, the cable, a reason of their own, which an "error" tells)
// give "cortado" borrados quedan (files) liberados lista_borrada in place of "fin".

/// "liberar" UDID CARPETA: takes off the phone what has a whole copy in the folder. Notices: "plan" a_borrar se_quedan
/// (files) bytes, unconfirmed al_quitar_lista (a sentence, or empty); confirmed, after it "progreso" hechos, "fin"
/// borrados liberados siguen_ahi (files that should have gone) sin_prueba (of those: the copy could not be proved)
/// se_quedan sin_mirar (folders that the phone would not list) quedan_en_carrete (photos; absent when not all could be
/// listed) lista_borrada; not well when one stays that should have gone. What goes is told before it goes in "Borradas
/// del iPhone.txt" in the folder.
int liberar(const QStringList &argumentos, Avisos &avisar);
/// "borrar-fotos-iphone" UDID COPIAS: every file of the roll, against the backup of that phone in the folder of
/// backups. Notices: "copia" bien motivo telefono fecha (seconds since 1970) fotos faltan (files) solo_icloud;
/// unconfirmed, "plan" a_borrar bytes. Confirmed, and only when the backup holds every photo: "total" n, "progreso"
/// hechos, "fin" as of `liberar`.
int borrarFotosIPhone(const QStringList &argumentos, Avisos &avisar);
/// "borrar-biblioteca-fotos" UDID COPIAS: the roll, its edits, the thumbnails and the list of the Photos app. Notices
/// as of the last one, but "progreso" hechos copiados fichero, "fin" borrados quedan_fotos quedan_miniaturas sin_mirar
/// fotos_en_copia lista_borrada.
int borrarBibliotecaFotos(const QStringList &argumentos, Avisos &avisar);
/// "borrar-elegidas" UDID LISTA CARPETA [SIN_COPIAR]: the files of the list. Those that the second list names go
/// without a copy, as the owner was told; all others only after the proof of theirs in the folder. Unconfirmed: "plan"
/// as above. Confirmed: "total" n, "progreso" hechos copiados fichero, "fin" as of `liberar`.
int borrarElegidas(const QStringList &argumentos, Avisos &avisar);
/// "borrar-elegidas-de-verdad" UDID LISTA CARPETA [SIN_COPIAR]: the same, and the list of the Photos app with them.
int borrarElegidasDeVerdad(const QStringList &argumentos, Avisos &avisar);
/// "recuperar-carrete" UDID COPIAS DESTINO: the roll out of the backup of that phone, in its own folders. Notices:
/// "total" n, "progreso" hechos copiados, "fin" recuperadas saltadas bytes.
int recuperarCarrete(const QStringList &argumentos, Avisos &avisar);
/// "listar-carrete" UDID CARPETA: notices "carrete" lista, as many as it takes, whose elements have ruta, carpeta,
/// nombre, bytes, fecha (seconds since 1970), tipo ("foto", "video", "retoque" or "ajustes"), elemento (the same for
/// all files of one photo), copiado (in the folder) and estado ("visible", "oculta" or "papelera"); and sin_mirar,
/// the number of folders that the phone would not list.
int listarCarrete(const QStringList &argumentos, Avisos &avisar);
/// "miniaturas" UDID LISTA FOTOS CARPETA: makes the small pictures of the files of the list that are not in CARPETA
/// yet, named by `nombreDeMiniatura`: of the phone's own, of the copy in the folder FOTOS, or else of the file itself.
/// Notices: "total" n, "progreso" hechos, "fin" hechas fallidas.
int miniaturas(const QStringList &argumentos, Avisos &avisar);

/// "red" UDID: one notice "red": operador, telefono, sim_estado (in words), wifi_on, avion.
int red(const QStringList &argumentos, Avisos &avisar);

} // namespace vellora::motor
