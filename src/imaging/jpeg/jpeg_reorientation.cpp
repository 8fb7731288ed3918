#include "imaging/jpeg/jpeg_reorientation.h"

#include "imaging/base/image_limits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kestrova::imaging {

namespace {

/// For each coefficient of a turned block, in natural order: the coefficient that it comes from, and its
/// sign. A mirrored cosine of odd frequency is the same cosine negated.
struct BlockReorientation {
  std::array<std::uint8_t, DCTSIZE2> from{};
  std::array<std::int16_t, DCTSIZE2> sign{};

  explicit BlockReorientation(const Reorientation& reorientation) {
    for (std::size_t i = 0; i < DCTSIZE2; ++i) {
      std::size_t row = i / DCTSIZE;
      std::size_t column = i % DCTSIZE;
      if (reorientation.transpose) std::swap(row, column);
      from[i] = static_cast<std::uint8_t>(row * DCTSIZE + column);
      const bool negative =
          (reorientation.mirrorX && column % 2 == 1) != (reorientation.mirrorY && row % 2 == 1);
      sign[i] = negative ? -1 : 1;
    }
  }

  void apply(const JBLOCK& source, JBLOCK& result) const {
    for (std::size_t i = 0; i < DCTSIZE2; ++i) result[i] = static_cast<JCOEF>(sign[i] * source[from[i]]);
  }
};

/// The blocks of one component, before and after turning.
struct Component {
  jvirt_barray_ptr source = nullptr;
  jvirt_barray_ptr result = nullptr;
  JDIMENSION sourceColumns = 0;
  JDIMENSION sourceRows = 0;
};

JDIMENSION roundedUp(JDIMENSION count, int unit) {
  const auto step = static_cast<JDIMENSION>(unit);
  return (count + step - 1) / step * step;
}

/// Memory for the turned blocks, with whole units at the edges, which stay empty outside the picture. Request
/// it before the coefficients are read: the library allocates everything at once.
jvirt_barray_ptr requestRoom(jpeg_decompress_struct& info, const jpeg_component_info& component,
                             const Reorientation& reorientation) {
  JDIMENSION columns = roundedUp(component.width_in_blocks, component.h_samp_factor);
  JDIMENSION rows = roundedUp(component.height_in_blocks, component.v_samp_factor);
  int rowsAtATime = component.v_samp_factor;
  if (reorientation.transpose) {
    std::swap(columns, rows);
    rowsAtATime = component.h_samp_factor;
  }
  auto* common = reinterpret_cast<j_common_ptr>(&info);
  return info.mem->request_virt_barray(common, JPOOL_IMAGE, TRUE, columns, rows,
                                       static_cast<JDIMENSION>(rowsAtATime));
}

JBLOCKROW blockRow(jpeg_decompress_struct& info, jvirt_barray_ptr blocks, JDIMENSION row, bool writable) {
  auto* common = reinterpret_cast<j_common_ptr>(&info);
  return info.mem->access_virt_barray(common, blocks, row, 1, writable ? TRUE : FALSE)[0];
}

/// Fills the result row by row from the top: the library does not allow a row to be skipped.
void reorientComponent(jpeg_decompress_struct& info, const Component& component, const RewritePlan& plan,
                       const BlockReorientation& block) {
  const Reorientation& reorientation = plan.reorientation;
  const JDIMENSION rows = reorientation.transpose ? component.sourceColumns : component.sourceRows;
  const JDIMENSION columns = reorientation.transpose ? component.sourceRows : component.sourceColumns;
  for (JDIMENSION row = 0; row < rows; ++row) {
    throwIfStopped(plan.stopped);
    const JBLOCKROW to = blockRow(info, component.result, row, true);
    JBLOCKROW from = nullptr;
    for (JDIMENSION column = 0; column < columns; ++column) {
      JDIMENSION x = reorientation.transpose ? row : column;
      JDIMENSION y = reorientation.transpose ? column : row;
      if (reorientation.mirrorX) x = component.sourceColumns - 1 - x;
      if (reorientation.mirrorY) y = component.sourceRows - 1 - y;
      if (reorientation.transpose || column == 0) from = blockRow(info, component.source, y, false);
      block.apply(from[x], to[column]);
    }
  }
}

/// Whether the coefficients may be held twice, with a tenth in reserve for the library's other memory.
bool coefficientsFit(const jpeg_decompress_struct& info) {
  std::int64_t bytes = 0;
  for (int i = 0; i < info.num_components; ++i) {
    const auto& component = info.comp_info[i];
    const auto columns = std::int64_t{roundedUp(component.width_in_blocks, component.h_samp_factor)};
    const auto rows = std::int64_t{roundedUp(component.height_in_blocks, component.v_samp_factor)};
    bytes += columns * rows * static_cast<std::int64_t>(sizeof(JBLOCK));
  }
  return 2 * bytes <= maxWorkingBytes / 10 * 9;
}

void transposeTable(JQUANT_TBL* table) {
  if (table == nullptr) return;
  for (std::size_t row = 0; row < DCTSIZE; ++row) {
    for (std::size_t column = 0; column < row; ++column) {
      std::swap(table->quantval[row * DCTSIZE + column], table->quantval[column * DCTSIZE + row]);
    }
  }
}

void configure(jpeg_decompress_struct& source, jpeg_compress_struct& result,
               const Reorientation& reorientation) {
  jpeg_copy_critical_parameters(&source, &result);
  result.optimize_coding = TRUE;
  result.write_JFIF_header = FALSE;
  result.write_Adobe_marker = FALSE;
  if (source.progressive_mode == TRUE) jpeg_simple_progression(&result);
  if (!reorientation.transpose) return;
  std::swap(result.image_width, result.image_height);
  for (auto* table : result.quant_tbl_ptrs) transposeTable(table);
  for (int i = 0; i < result.num_components; ++i) {
    std::swap(result.comp_info[i].h_samp_factor, result.comp_info[i].v_samp_factor);
  }
}

}  // namespace

bool reorientsLosslessly(JpegDecoder& decoder, const Reorientation& reorientation) {
  const JpegFormat format = decoder.format();
  const bool single = format.components.size() == 1;
  const int width = DCTSIZE * (single ? 1 : format.maxHorizontal());
  const int height = DCTSIZE * (single ? 1 : format.maxVertical());
  return (!reorientation.mirrorX || decoder.size().width % width == 0) &&
         (!reorientation.mirrorY || decoder.size().height % height == 0) && coefficientsFit(decoder.info());
}

Bytes reorientCoefficients(JpegDecoder& decoder, const RewritePlan& plan) {
  auto& info = decoder.info();
  std::vector<Component> components(static_cast<std::size_t>(info.num_components));
  decoder.errors().guarded([&] {
    for (std::size_t i = 0; i < components.size(); ++i) {
      components[i].result = requestRoom(info, info.comp_info[i], plan.reorientation);
    }
    jvirt_barray_ptr* sources = jpeg_read_coefficients(&info);
    for (std::size_t i = 0; i < components.size(); ++i) components[i].source = sources[i];
  });
  std::vector<jvirt_barray_ptr> results;
  for (std::size_t i = 0; i < components.size(); ++i) {
    components[i].sourceColumns = info.comp_info[i].width_in_blocks;
    components[i].sourceRows = info.comp_info[i].height_in_blocks;
    results.push_back(components[i].result);
  }
  const BlockReorientation block(plan.reorientation);
  for (const auto& component : components) {
    decoder.errors().guarded([&] { reorientComponent(info, component, plan, block); });
  }
  JpegCompressor compressor(plan.stopped);
  compressor.errors().guarded([&] {
    configure(info, compressor.info(), plan.reorientation);
    jpeg_write_coefficients(&compressor.info(), results.data());
    jpeg_finish_compress(&compressor.info());
  });
  decoder.errors().guarded([&] { jpeg_finish_decompress(&info); });
  return compressor.bytes();
}

}  // namespace kestrova::imaging
