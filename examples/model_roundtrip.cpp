// model_roundtrip: a model's set and array written to a workbook through the
// qdsheet module's "xls" driver and read back into fresh objects, with the
// reference host playing the modelling runtime.
//   model_roundtrip DIRECTORY      (writes DIRECTORY/model.xls)
// Exits 1 when a transfer fails or what comes back differs.
#include "refhost.h"

#include <iostream>

using namespace qdhost;

int main(int argc, char **argv) {
    Host host; // loads libqdsheet.so
    if (!host.loaded()) {
        std::cerr << "model_roundtrip: " << host.loadError() << "\n";
        return 1;
    }
    Context writer(argc > 1 ? argv[1] : ".");
    Set *cities = writer.newSet(QD_STRING);
    Array *demand = writer.newArray(QD_REAL, {cities});
    const struct {
        const char *city;
        double tons;
    } rows[] = {{"Oslo", 12.5}, {"Bergen", 7}, {"Tromsø", 3.25}};
    for (const auto &r : rows) demand->set({cities->add(qdStr(r.city))}, qdReal(r.tons));

    // "skiph+" writes a header row from the column names, "grow" extends the
    // one-row range down as far as the data goes; reading finds the columns
    // by their names in whole columns.
    int rc = host.writeItem(writer, "xls", "model.xls", "skiph+;grow;[Cities$A1](city)",
                            cities->type(), cities);
    if (rc == 0)
        rc = host.writeItem(writer, "xls", "model.xls", "skiph+;grow;[Demand$A1:B1](city,tons)",
                            demand->type(), demand);

    Context reader(writer.directory);
    Set *citiesBack = reader.newSet(QD_STRING);
    Array *demandBack = reader.newArray(QD_REAL, {citiesBack});
    if (rc == 0)
        rc = host.readItem(reader, "xls", "model.xls", "skiph;[Cities$A:A](city)",
                           citiesBack->type(), citiesBack);
    if (rc == 0)
        rc = host.readItem(reader, "xls", "model.xls", "skiph;[Demand$A:B](city,tons)",
                           demandBack->type(), demandBack);
    if (rc != 0) {
        std::cerr << "model_roundtrip: " << writer.allErrors() << reader.allErrors() << "\n";
        return 1;
    }
    bool same =
        citiesBack->texts() == cities->texts() && demandBack->entries() == demand->entries();
    for (const auto &entry : demandBack->entries())
        std::cout << entry.first[0] << ": " << entry.second << "\n";
    std::cout << (same ? "the model came back unchanged\n" : "the model came back CHANGED\n");
    return same ? 0 : 1;
}
