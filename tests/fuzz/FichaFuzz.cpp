#include "core/Plist.h"
#include "engine/backup/CopiaAbierta.h"

using namespace vellora;

/// Any bytes as a property list: as the archive that Manifest.db holds of each file, and as Manifest.plist.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    const QByteArray lista(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(largo));
    if (const auto datos = motor::leerDatosDeFichero(lista); datos && datos->tamano < 0)
        __builtin_trap();
    if (const auto plist = Plist::interpretar(lista)) {
        const auto raiz = plist->raiz();
        static_cast<void>(raiz["IsEncrypted"].logico());
        static_cast<void>(raiz["BackupKeyBag"].datos());
        static_cast<void>(raiz["ManifestKey"].datos());
        static_cast<void>(raiz["Lockdown"]["ProductVersion"].texto());
        static_cast<void>(raiz["$objects"].en(1)["Size"].entero());
    }
    return 0;
}
