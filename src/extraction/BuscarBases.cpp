#include "extraction/Extraccion.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

struct Conocida {
    QStringList sitios; ///< under the unpacked folder, of newer systems first
    const char *algo;   ///< asks whether it holds anything of what it is there for
};

const Conocida *conocida(const QString &nombre)
{
    const auto enCasa = u"HomeDomain/Library/"_s;
    const auto enSafari = u"AppDomain-com.apple.mobilesafari/Library/"_s;
    static const QHash<QString, Conocida> todas{
        {u"sms.db"_s, {{enCasa + u"SMS/sms.db"_s}, "SELECT 1 FROM message LIMIT 1"}},
        {u"AddressBook.sqlitedb"_s,
         {{enCasa + u"AddressBook/AddressBook.sqlitedb"_s}, "SELECT 1 FROM ABPerson LIMIT 1"}},
        {u"AddressBookImages.sqlitedb"_s,
         {{enCasa + u"AddressBook/AddressBookImages.sqlitedb"_s}, "SELECT 1 FROM ABThumbnailImage LIMIT 1"}},
        {u"NoteStore.sqlite"_s,
         {{u"AppDomainGroup-group.com.apple.notes/NoteStore.sqlite"_s}, "SELECT 1 FROM ZICCLOUDSYNCINGOBJECT LIMIT 1"}},
        {u"Calendar.sqlitedb"_s, {{enCasa + u"Calendar/Calendar.sqlitedb"_s}, "SELECT 1 FROM CalendarItem LIMIT 1"}},
        {u"CallHistory.storedata"_s,
         {{enCasa + u"CallHistoryDB/CallHistory.storedata"_s}, "SELECT 1 FROM ZCALLRECORD LIMIT 1"}},
        {u"History.db"_s,
         {{enSafari + u"Safari/History.db"_s, enCasa + u"Safari/History.db"_s},
          "SELECT 1 FROM history_visits LIMIT 1"}},
        {u"Bookmarks.db"_s,
         {{enSafari + u"Safari/Bookmarks.db"_s, enCasa + u"Safari/Bookmarks.db"_s}, "SELECT 1 FROM bookmarks LIMIT 1"}},
        {u"healthdb_secure.sqlite"_s,
         {{u"HealthDomain/Health/healthdb_secure.sqlite"_s}, "SELECT 1 FROM samples LIMIT 1"}},
        {u"voicemail.db"_s, {{enCasa + u"Voicemail/voicemail.db"_s}, "SELECT 1 FROM voicemail LIMIT 1"}},
        {u"ChatStorage.sqlite"_s, {{u"ChatStorage.sqlite"_s}, "SELECT 1 FROM ZWAMESSAGE LIMIT 1"}},
    };
    const auto suya = todas.constFind(nombre);
    return suya == todas.cend() ? nullptr : &*suya;
}

/// An app makes an empty file before it needs one; what there is may also stand in the log alone.
bool vacia(const QFileInfo &fichero)
{
    return fichero.size() == 0 && QFileInfo(fichero.filePath() + u"-wal"_s).size() == 0;
}

} // namespace

QStringList buscar(const QString &nombre, const QString &dentro)
{
    QStringList hallados;
    QDirIterator recorrido(dentro, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        recorrido.next();
        if (recorrido.fileName() == nombre && !vacia(recorrido.fileInfo()))
            hallados << recorrido.filePath();
    }
    const auto *suya = conocida(nombre);
    const auto lugar = [&](const QString &fichero) {
        const auto sitio = suya == nullptr ? -1 : suya->sitios.indexOf(fichero.mid(dentro.size() + 1));
        const bool conAlgo = suya != nullptr && hallados.size() > 1 && [&] {
            const auto base = abrirPublico(fichero);
            return base && base->hay(suya->algo);
        }();
        return std::tuple(sitio < 0, !conAlgo, sitio, fichero);
    };
    QList<std::tuple<bool, bool, qsizetype, QString>> lugares;
    for (const auto &fichero : std::as_const(hallados))
        lugares << lugar(fichero);
    std::sort(lugares.begin(), lugares.end());
    hallados.clear();
    for (const auto &uno : std::as_const(lugares))
        hallados << std::get<QString>(uno);
    return hallados;
}

} // namespace vellora::Extraccion
