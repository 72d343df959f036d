#include "contenido/Contexto.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

QString direccionDeRed(Azar &a)
{
    QStringList partes{u"f4"_s};
    for (int i = 0; i < 5; ++i)
        partes << a.hex(2);
    return partes.join(u':');
}

/// An IMEI: a type code, a serial number and the digit that makes the Luhn sum a multiple of ten.
QString imei(Azar &a)
{
    const auto cifras = u"35407615"_s + a.cifras(6);
    int suma = 0;
    for (int i = 0; i < 14; ++i) {
        const int n = cifras[i].digitValue() * (i % 2 == 0 ? 1 : 2);
        suma += n / 10 + n % 10;
    }
    return cifras + QString::number((10 - suma % 10) % 10);
}

QJsonObject globales(const Contexto &c, Azar &a)
{
    const auto red = direccionDeRed(a);
    const auto primero = imei(a);
    QJsonObject o{{u"DeviceName"_s, c.opciones.nombre},
                  {u"ProductType"_s, c.opciones.producto},
                  {u"ProductVersion"_s, c.opciones.version},
                  {u"HumanReadableProductVersionString"_s, c.opciones.version},
                  {u"ProductName"_s, u"iPhone OS"_s},
                  {u"BuildVersion"_s, u"21F90"_s},
                  {u"DeviceClass"_s, u"iPhone"_s},
                  {u"DeviceColor"_s, u"1"_s},
                  {u"DeviceEnclosureColor"_s, u"5"_s},
                  {u"HardwareModel"_s, u"D73AP"_s},
                  {u"HardwarePlatform"_s, u"t8120"_s},
                  {u"CPUArchitecture"_s, u"arm64e"_s},
                  {u"ModelNumber"_s, u"MQ0G3"_s},
                  {u"RegionInfo"_s, u"QL/A"_s},
                  {u"RegulatoryModelNumber"_s, u"A2890"_s},
                  {u"SerialNumber"_s, u"F2L"_s + a.hex(7).toUpper()},
                  {u"MLBSerialNumber"_s, u"F3X"_s + a.hex(14).toUpper()},
                  {u"UniqueChipID"_s, static_cast<qint64>(c.opciones.udid.section(u'-', 1).toULongLong(nullptr, 16) &
                                                          0xffffffffffffffULL)},
                  {u"UniqueDeviceID"_s, c.opciones.udid},
                  {u"ChipID"_s, 33056},
                  {u"BoardId"_s, 12},
                  {u"DieID"_s, a.entero(1, 1LL << 50)},
                  {u"InternationalMobileEquipmentIdentity"_s, primero},
                  {u"InternationalMobileEquipmentIdentity2"_s, imei(a)},
                  {u"MobileEquipmentIdentifier"_s, primero.left(14)},
                  {u"MEID"_s, primero.left(14)},
                  {u"InternationalMobileSubscriberIdentity"_s, u"21407"_s + a.cifras(10)},
                  {u"IntegratedCircuitCardIdentity"_s, u"893407"_s + a.cifras(13)},
                  {u"PhoneNumber"_s, c.numeroPropio},
                  {u"SIMStatus"_s, u"kCTSIMSupportSIMStatusReady"_s},
                  {u"SIMTrayStatus"_s, u"kCTSIMSupportSIMTrayInsertedWithSIM"_s},
                  {u"SIM1IsEmbedded"_s, false},
                  {u"kCTPostponementStatus"_s, u"kCTPostponementStatusActivated"_s}};
    const QJsonObject mas{
        {u"BasebandStatus"_s, u"BBInfoAvailable"_s},
        {u"BasebandVersion"_s, u"2.60.02"_s},
        {u"BasebandChipID"_s, 8'798'433},
        {u"BasebandRegionSKU"_s, QJsonObject{{u"$datos"_s, u"AAAAAA=="_s}}},
        {u"FirmwareVersion"_s, u"iBoot-10151.122.1"_s},
        {u"TelephonyCapability"_s, true},
        {u"WiFiAddress"_s, red},
        {u"BluetoothAddress"_s, direccionDeRed(a)},
        {u"EthernetAddress"_s, direccionDeRed(a)},
        {u"TimeZone"_s, u"Europe/Madrid"_s},
        {u"TimeZoneOffsetFromUTC"_s, 3600},
        {u"TimeIntervalSince1970"_s, static_cast<double>(ahoraDelTelefono) + 0.25},
        {u"Uses24HourClock"_s, true},
        {u"ActivationState"_s, u"Activated"_s},
        {u"ActivationStateAcknowledged"_s, true},
        {u"BrickState"_s, false},
        {u"PasswordProtected"_s, true},
        {u"HostAttached"_s, true},
        {u"TrustedHostAttached"_s, true},
        {u"HasSiDP"_s, true},
        {u"PartitionType"_s, u"GUID_partition_scheme"_s},
        {u"ProductionSOC"_s, true},
        {u"ProtocolVersion"_s, u"2"_s},
        {u"SoftwareBehavior"_s, QJsonObject{{u"$datos"_s, u"EQAAAAAAAAAAAAAAAAAAAA=="_s}}},
        {u"SupportedDeviceFamilies"_s, QJsonArray{1}},
        {u"UseRaptorCerts"_s, true},
        {u"PairRecordProtectionClass"_s, 4},
        {u"NonVolatileRAM"_s, QJsonObject{{u"auto-boot"_s, QJsonObject{{u"$datos"_s, u"dHJ1ZQ=="_s}}}}},
        {u"FactoryActivated"_s, false},
        {u"ReleaseType"_s, u"User"_s},
        {u"WirelessBoardSerialNumber"_s, a.hex(17).toUpper()}};
    for (auto i = mas.begin(); i != mas.end(); ++i)
        o[i.key()] = i.value();
    o[u"CarrierBundleInfoArray"_s] = QJsonArray{
        QJsonObject{{u"CFBundleIdentifier"_s, u"com.apple.Movil_Ejemplo_es"_s},
                    {u"CFBundleVersion"_s, u"58.0"_s},
                    {u"InternationalMobileSubscriberIdentity"_s, o[u"InternationalMobileSubscriberIdentity"_s]},
                    {u"IntegratedCircuitCardIdentity"_s, o[u"IntegratedCircuitCardIdentity"_s]},
                    {u"MCC"_s, u"214"_s},
                    {u"MNC"_s, u"07"_s},
                    {u"SIMGID1"_s, QString()},
                    {u"Slot"_s, u"kOne"_s},
                    {u"kCTPostponementInfoAvailable"_s, u"kCTPostponementInfoServiceProvisioned"_s}}};
    return o;
}

QJsonObject dominios(const Contexto &c, Azar &a)
{
    constexpr qint64 total = 256'000'000'000, datosTotales = 239'300'000'000, libres = 38'200'000'000,
                     fotos = 41'870'000'000;
    return {{QString(), globales(c, a)},
            {u"com.apple.mobile.battery"_s, QJsonObject{{u"BatteryCurrentCapacity"_s, 82},
                                                        {u"BatteryIsCharging"_s, true},
                                                        {u"ExternalConnected"_s, true},
                                                        {u"ExternalChargeCapable"_s, true},
                                                        {u"FullyCharged"_s, false},
                                                        {u"GasGaugeCapability"_s, true},
                                                        {u"HasBattery"_s, true}}},
            {u"com.apple.disk_usage"_s, QJsonObject{{u"TotalDiskCapacity"_s, total},
                                                    {u"TotalSystemCapacity"_s, total - datosTotales},
                                                    {u"TotalSystemAvailable"_s, 0},
                                                    {u"TotalDataCapacity"_s, datosTotales},
                                                    {u"TotalDataAvailable"_s, libres + 1'400'000'000},
                                                    {u"AmountDataAvailable"_s, libres},
                                                    {u"AmountDataReserved"_s, 200'000'000},
                                                    {u"CalendarUsage"_s, 1'400'000},
                                                    {u"CameraUsage"_s, fotos},
                                                    {u"MediaCacheUsage"_s, 0},
                                                    {u"MobileApplicationUsage"_s, 88'450'000'000LL},
                                                    {u"NotesUsage"_s, 12'300'000},
                                                    {u"PhotoUsage"_s, fotos},
                                                    {u"VoicemailUsage"_s, 3'100'000},
                                                    {u"WebAppCacheUsage"_s, 5'200'000}}},
            {u"com.apple.mobile.backup"_s,
             QJsonObject{{u"WillEncrypt"_s, false}, {u"Version"_s, u"3.3"_s}, {u"RequiresEncryption"_s, false}}},
            {u"com.apple.iTunes"_s,
             QJsonObject{{u"AccountKind"_s, 0}, {u"MinITunesVersion"_s, u"12.12.3"_s}, {u"OEMID"_s, 0}, {u"OEA"_s, 0}}},
            {u"com.apple.mobile.iTunes"_s,
             QJsonObject{{u"MinITunesVersion"_s, u"12.12.3"_s},
                         {u"DBVersion"_s, 5},
                         {u"FamilyID"_s, 10150},
                         {u"SQLiteDB"_s, true},
                         {u"VideoPlaylistsSupported"_s, true},
                         {u"GenreSpecialSupported"_s, true},
                         {u"AppleDRMVersion"_s,
                          QJsonObject{{u"Format"_s, 1}, {u"MaximumVersion"_s, 8}, {u"MinimumVersion"_s, 0}}}}},
            {u"com.apple.international"_s,
             QJsonObject{{u"Language"_s, u"es-ES"_s},
                         {u"Locale"_s, u"es_ES"_s},
                         {u"Keyboard"_s, u"es_ES"_s},
                         {u"SupportedLanguages"_s, QJsonArray{u"es-ES"_s, u"ca-ES"_s, u"en-GB"_s}},
                         {u"SupportedLocales"_s, QJsonArray{u"es_ES"_s, u"en_GB"_s}}}},
            {u"com.apple.mobile.wireless_lockdown"_s, QJsonObject{{u"EnableWifiConnections"_s, true},
                                                                  {u"SupportsWifi"_s, true},
                                                                  {u"SupportsWifiSyncing"_s, true},
                                                                  {u"BonjourFullServiceName"_s, QString()}}},
            {u"com.apple.mobile.lockdown_cache"_s, QJsonObject{{u"ActivationState"_s, u"Activated"_s}}},
            {u"com.apple.mobile.data_sync"_s,
             QJsonObject{{u"Contacts"_s, QJsonObject{{u"Sources"_s, QJsonArray{u"iCloud"_s}}}}}},
            {u"com.apple.fmip"_s, QJsonObject{{u"IsAssociated"_s, true}}},
            {u"com.apple.mobile.chaperone"_s, QJsonObject{{u"DeviceIsChaperoned"_s, false}}},
            {u"com.apple.mobile.internal"_s, QJsonObject{{u"IsInternal"_s, false}, {u"PasswordConfigured"_s, true}}},
            {u"com.apple.security.mac.amfi"_s, QJsonObject{{u"DeveloperModeStatus"_s, false}}},
            {u"com.apple.mobile.sync_data_class"_s, QJsonObject{{u"Bookmarks"_s, QJsonObject()},
                                                                {u"Calendars"_s, QJsonObject()},
                                                                {u"Contacts"_s, QJsonObject()}}}};
}

} // namespace

void ponDatosDelTelefono(Contexto &c)
{
    auto a = c.azar("telefono");
    const QJsonObject todo{{u"udid"_s, c.opciones.udid}, {u"dominios"_s, dominios(c, a)}};
    c.escribe(c.raiz + u"/telefono.json"_s, QJsonDocument(todo).toJson());
}

} // namespace simulado
