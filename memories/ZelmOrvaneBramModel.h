#pragma once

#include "framework/ZelmModelBlock.h"
#include "memories/ZelmOrvaneBramData.h"
#include "memories/ZelmOrvaneBramParams.h"

class ZELM_EXPORT ZelmOrvaneBramModel;
extern template class ZelmModelBlock<ZelmOrvaneBramModel, ZelmOrvaneBramParams, ZelmOrvaneBramData>;

/// Dynamic power of a group of like dual-port block memories. One memory of each cascade group is active, all others
/// stand by. In the simple-dual-port modes port A only reads and port B only writes.
class ZELM_EXPORT ZelmOrvaneBramModel final
    : public ZelmModelBlock<ZelmOrvaneBramModel, ZelmOrvaneBramParams, ZelmOrvaneBramData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneBramModel";

#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Access;        // reading or writing through one port
    struct Configuration; // one value of MODE and its power cells
    struct Port;
    struct PortOnRail;
    struct WriteMode;
    static const Configuration kBlkm18, kBlkm18Sdp, kBlkm36, kBlkm36Sdp, kBlkm36SdpEcc, kBlkm36SdpEccDecodeOnly,
        kBlkm36SdpEccEncodeOnly;
    static const Port kPortA, kPortB;
    static const PortOnRail kAOnVccint, kAOnVccram, kBOnVccint, kBOnVccram;
    static const WriteMode kWriteModes[];

    float readRate(const Port& port, Params& params, const Data& data) const;
    float readToggle(const Port& port, Params& params, const Data& data) const;
    float standby(const Port& port, Params& params, const Data& data) const;
    float unusedPower(const Port& port, Params& params, const Data& data) const;
    float writeRate(const Port& port, Params& params, const Data& data) const;
    float writeToggle(const Port& port, Params& params, const Data& data) const;

    float activity(const PortOnRail& portOnRail, Params& params, const Data& data) const;
    float readCurrent(const PortOnRail& portOnRail, Params& params, const Data& data) const;
    float writeCurrent(const PortOnRail& portOnRail, Params& params, const Data& data) const;

    float powerAVccint(const Configuration& configuration, Params& params, const Data& data) const;
    float powerAVccram(const Configuration& configuration, Params& params, const Data& data) const;
    float powerBVccint(const Configuration& configuration, Params& params, const Data& data) const;
    float powerBVccram(const Configuration& configuration, Params& params, const Data& data) const;

    bool isTrueDualPort(Params& params, const Data& data) const;
    std::size_t selectedKey(Params& params, const Data& data) const;
    template <class Current>
    float ofSelectedKey(bool simpleDualPort, Params& params, const Data& data, Current current) const;
    float current(float& cell, const Access& access, const PortOnRail& portOnRail, Params& params,
                  const Data& data) const;
    float toggleTerm(float& cell, const Access& access, const Port& port, Params& params, const Data& data) const;
    float vccintPower(float& cell, const PortOnRail& portOnRail, Params& params, const Data& data) const;
    float vccramPower(float& cell, const PortOnRail& portOnRail, Params& params, const Data& data) const;
    using ConfigurationPower = float (ZelmOrvaneBramModel::*)(const Configuration&, Params&, const Data&) const;
    float sumOfMode(ConfigurationPower powerA, ConfigurationPower powerB, Params& params, const Data& data) const;
};
