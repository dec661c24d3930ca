// SPDX-License-Identifier: MIT
#include "virtualtv/broadcast/Decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "services/Language.h"

extern "C" {
#include <dvbpsi/dvbpsi.h>
// These headers rely on the one above.
#include <dvbpsi/demux.h>
#include <dvbpsi/descriptor.h>
#include <dvbpsi/dr.h>
#include <dvbpsi/nit.h>
#include <dvbpsi/pat.h>
#include <dvbpsi/pmt.h>
#include <dvbpsi/psi.h>
#include <dvbpsi/sdt.h>
}

namespace broadcast_tests {

namespace {

using Key = std::pair<int, int>;  ///< transport stream and program

struct Told {
  int network = -1;
  std::string name;
  std::string provider;
  bool isScrambled = false;
  int number = 0;
  std::string audio;
  std::string subtitles;
};

std::string lineOf(const Key& key, const Told& told) {
  return std::to_string(told.network) + " " + std::to_string(key.first) + " " + std::to_string(key.second) + " '" +
         told.name + "' '" + told.provider + "'" + (told.isScrambled ? " scrambled" : "") + " number " +
         std::to_string(told.number) + " audio" + told.audio + " subtitles" + told.subtitles;
}

std::string streamOf(int pid, const std::string& language) {
  return " " + std::to_string(pid) + ":" + virtualtv::nameOfLanguage(virtualtv::languageNamed(language).value_or(0));
}

std::string lettersOf(const std::uint8_t* letters) {
  return {letters, letters + 3};
}

template <typename Item, typename Take>
void each(Item* first, Take take) {
  for (; first != nullptr; first = first->p_next) take(*first);
}

/// The library's decoders, one for each PID with tables.
class Library {
 public:
  Library() {
    dvbpsi_pat_attach(handle(0), takePrograms, this);
    dvbpsi_AttachDemux(handle(0x10), attachTable, this);
    dvbpsi_AttachDemux(handle(0x11), attachTable, this);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    dvbpsi_pat_detach(handles_.at(0));
    for (const int pid : maps_) dvbpsi_pmt_detach(handles_.at(pid));
    for (const int pid : {0x10, 0x11}) dvbpsi_DetachDemux(handles_.at(pid));
    for (const auto& [pid, decoder] : handles_) dvbpsi_delete(decoder);
  }

  void push(std::uint8_t* packet) {
    const auto found = handles_.find((packet[1] & 0x1F) << 8 | packet[2]);
    if (found != handles_.end()) dvbpsi_packet_push(found->second, packet);
  }

  std::map<Key, Told> told;
  std::map<Key, int> numbers;  ///< the numbers by which viewers know them

 private:
  dvbpsi_t* handle(int pid) {
    dvbpsi_t*& known = handles_[pid];
    if (known == nullptr) known = dvbpsi_new(nullptr, DVBPSI_MSG_NONE);
    return known;
  }

  static void takePrograms(void* self, dvbpsi_pat_t* table) {
    auto& library = *static_cast<Library*>(self);
    library.stream_ = table->i_ts_id;
    each(table->p_first_program, [&](const dvbpsi_pat_program_t& program) {
      if (program.i_number == 0) return;
      library.told[{table->i_ts_id, program.i_number}];
      dvbpsi_pmt_attach(library.handle(program.i_pid), program.i_number, takeMap, self);
      library.maps_.push_back(program.i_pid);
    });
    dvbpsi_pat_delete(table);
  }

  static void takeMap(void* self, dvbpsi_pmt_t* table) {
    auto& library = *static_cast<Library*>(self);
    Told& told = library.told[{library.stream_, table->i_program_number}];
    each(table->p_first_es, [&](const dvbpsi_pmt_es_t& stream) { takeStream(stream, told); });
    dvbpsi_pmt_delete(table);
  }

  static void takeStream(const dvbpsi_pmt_es_t& stream, Told& told) {
    std::string languages;
    each(stream.p_first_descriptor, [&](dvbpsi_descriptor_t& descriptor) {
      if (descriptor.i_tag == 0x0A) {
        const auto* const list = dvbpsi_DecodeISO639Dr(&descriptor);
        for (int at = 0; at < list->i_code_count; ++at) {
          languages += streamOf(stream.i_pid, lettersOf(list->code[at].iso_639_code));
        }
      }
      if (descriptor.i_tag != 0x56) return;
      const auto* const pages = dvbpsi_DecodeTeletextDr(&descriptor);
      for (int at = 0; at < pages->i_pages_number; ++at) {
        const auto& page = pages->p_pages[at];
        if (page.i_teletext_type != 2 && page.i_teletext_type != 5) continue;
        told.subtitles += streamOf(stream.i_pid, lettersOf(page.i_iso6392_language_code));
      }
    });
    if (stream.i_type != 3 && stream.i_type != 4) return;
    told.audio += languages.empty() ? streamOf(stream.i_pid, "und") : languages;
  }

  static void attachTable(dvbpsi_t* decoder, std::uint8_t table, std::uint16_t extension, void* self) {
    if (table == 0x42 || table == 0x46) dvbpsi_sdt_attach(decoder, table, extension, takeServices, self);
    if (table == 0x40) dvbpsi_nit_attach(decoder, table, extension, takeNetwork, self);
  }

  static void takeServices(void* self, dvbpsi_sdt_t* table) {
    auto& library = *static_cast<Library*>(self);
    each(table->p_first_service, [&](const dvbpsi_sdt_service_t& service) {
      Told& told = library.told[{table->i_extension, service.i_service_id}];
      told.network = table->i_network_id;
      told.isScrambled = service.b_free_ca;
      each(service.p_first_descriptor, [&](dvbpsi_descriptor_t& descriptor) {
        if (descriptor.i_tag != 0x48) return;
        const auto* const names = dvbpsi_DecodeServiceDr(&descriptor);
        told.name.assign(names->i_service_name, names->i_service_name + names->i_service_name_length);
        const std::uint8_t* const provider = names->i_service_provider_name;
        told.provider.assign(provider, provider + names->i_service_provider_name_length);
      });
    });
    dvbpsi_sdt_delete(table);
  }

  static void takeNetwork(void* self, dvbpsi_nit_t* table) {
    auto& library = *static_cast<Library*>(self);
    each(table->p_first_ts, [&](const dvbpsi_nit_ts_t& stream) {
      each(stream.p_first_descriptor, [&](dvbpsi_descriptor_t& descriptor) {
        if (descriptor.i_tag != 0x83) return;
        const auto* const numbers = dvbpsi_DecodeLCNDr(&descriptor);
        for (int at = 0; at < numbers->i_number_of_entries; ++at) {
          const auto& entry = numbers->p_entries[at];
          library.numbers[{stream.i_ts_id, entry.i_service_id}] = entry.i_logical_channel_number;
        }
      });
    });
    dvbpsi_nit_delete(table);
  }

  std::map<int, dvbpsi_t*> handles_;
  std::vector<int> maps_;
  int stream_ = -1;
};

}  // namespace

std::string decodedLine(const virtualtv::broadcast::FoundService& service) {
  Told told{service.stream.network, service.name, service.provider, service.isScrambled, 0, {}, {}};
  if (service.number) told.number = service.number->major;
  for (const auto& track : service.audio) told.audio += streamOf(track.pid, virtualtv::nameOfLanguage(track.lang));
  for (const auto& track : service.subtitles) {
    told.subtitles += streamOf(track.pid, virtualtv::nameOfLanguage(track.lang));
  }
  return lineOf({service.stream.stream, service.program}, told);
}

std::vector<std::string> decoded(const Blob& bytes) {
  Library library;
  Blob packets = bytes;
  for (std::size_t at = 0; at + 188 <= packets.size(); at += 188) library.push(packets.data() + at);
  std::vector<std::string> lines;
  for (auto& [key, told] : library.told) {
    if (const auto number = library.numbers.find(key); number != library.numbers.end()) told.number = number->second;
    lines.push_back(lineOf(key, told));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

}  // namespace broadcast_tests
