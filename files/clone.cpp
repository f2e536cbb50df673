#include "files/clone.h"

#include <vector>

#include "files/source_scope.h"
#include "link/source_codes.h"

namespace kalde2 {
namespace {

/// Source codes to ask for a parameter. A source index that has no code of its own gives 0.
std::vector<std::int16_t> SourceCodes(const ParamRecord& record, const Connectivity& connectivity) {
  if (!record.PerSource) return {kFirstSourceCode};
  std::vector<std::int16_t> codes;
  for (const int source : ApplicableSources(record, connectivity)) {
    codes.push_back(SourceIndexToCode(source));
  }
  return codes;
}

}  // namespace

TransferReport CloneTransfer::CloneRead() {
  return ForEachParameter("Reading Parameters", [](CatalogueIndex index, std::int16_t source_code) {
    return ParameterRequest{.is_read = true, .source = source_code, .address = AddressOf(index)};
  });
}

TransferReport CloneTransfer::CloneWrite() {
  const KeptSource kept(unit_.values);
  return ForEachParameter("Writing Parameters",
                          [this](CatalogueIndex index, std::int16_t source_code) {
                            // Selects the column that the value is taken from.
                            if (unit_.catalogue.IsPerSource(index)) {
                              unit_.values.SetParamValue(ValueStore::kCurrentSource, source_code);
                            }
                            return ParameterRequest{.source = source_code,
                                                    .value = unit_.values.GetParamValue(index),
                                                    .address = AddressOf(index)};
                          });
}

TransferReport CloneTransfer::ForEachParameter(std::string_view caption,
                                               const RequestFor& request_for) {
  TransferReport report;
  progress_.Begin();
  progress_.SetCaption(caption);
  progress_.SetRange(0, kCatalogueSize - 1);
  Transfer(request_for, report);
  progress_.End(report.is_complete);
  return report;
}

void CloneTransfer::Transfer(const RequestFor& request_for, TransferReport& report) {
  for (const CatalogueIndex index : kCatalogueIndexes) {
    progress_.SetValue(index.number);
    const ParamRecord& record = unit_.catalogue.Record(index);
    if (!record.Active) continue;
    for (const std::int16_t source_code : SourceCodes(record, unit_.connectivity)) {
      const ParameterRequest request = request_for(index, source_code);
      const Outcome outcome = link_.Exchange(request).outcome;
      if (report.Count(request, outcome) == Outcome::kClosed) return;
    }
  }
  report.is_complete = true;
}

}  // namespace kalde2
