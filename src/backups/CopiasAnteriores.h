#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

/// The earlier backups of a phone. Each stands as "Copias anteriores/2026-05-03 21.04.10/UDID" in the folder of
/// backups: what holds a UDID's folder is a folder of backups like any other, for this program and for other tools, and
/// is opened, searched and restored from by being named as one. All of it blocks: background threads only.
namespace vellora::CopiasAnteriores
{

struct Anterior {
    QString carpetaCopias; ///< what takes the place of the folder of backups
    QString udid;
    QDateTime fecha;
    bool entera = false;  ///< finished and checked
    bool acabada = false; ///< nothing says that it is not
    qint64 bytes = 0;     ///< that its removal would free; 0 unless counted

    QString carpeta() const { return carpetaCopias + u'/' + udid; }
};

const QString &nombreDeLaCarpeta();
/// The folder to lock while one works in `carpetaCopias`: itself, or the one in which it is an earlier one. Any thread.
QString carpetaQueSeToma(const QString &carpetaCopias);

/// How many the owner wants to keep of each phone, 0 to 9; one unless said otherwise. Main thread only.
int cuantas();
void ponCuantas(int cuantas);

/// Those of that phone, youngest first.
QList<Anterior> listar(const QString &copias, const QString &udid, bool contando = false);

/// Moves the phone's backup out of its place, to be an earlier one. True when nothing stands in its place any more.
/// The caller holds the folder.
bool retirar(int carpeta, const QString &copias, const QString &udid);

/// Removes what stays of removals that were cut short. The caller holds the folder.
void limpiar(const QString &copias);

/// Does the same, and removes the finished ones that are older than the `cuantas` youngest, and those that say
/// themselves that they were never finished. `conservarLaBuena`: but not the youngest that is known to be whole. The
/// caller holds the folder.
void podar(const QString &copias, const QString &udid, int cuantas, bool conservarLaBuena);

/// Removes an earlier backup. False when some of it stays, or while another program is at work in the folder.
bool quitar(const QString &copias, const Anterior &cual);

} // namespace vellora::CopiasAnteriores
