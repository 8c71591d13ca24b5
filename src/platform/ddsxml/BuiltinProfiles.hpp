// The QoS profiles that every tree starts with.
#ifndef ZUV_PLATFORM_DDSXML_BUILTIN_PROFILES_HPP
#define ZUV_PLATFORM_DDSXML_BUILTIN_PROFILES_HPP

namespace zuv::ddsxml
{

constexpr char kBuiltinProfiles[] = R"(<dds>
  <qos_library name="BuiltinProfiles">
    <qos_profile name="Default">
      <domain_participant_qos/>
      <topic_qos/>
      <publisher_qos/>
      <subscriber_qos/>
      <datawriter_qos/>
      <datareader_qos/>
    </qos_profile>
    <qos_profile name="BestEffort" base_name="Default">
      <datawriter_qos>
        <reliability><kind>BEST_EFFORT_RELIABILITY_QOS</kind></reliability>
      </datawriter_qos>
    </qos_profile>
    <qos_profile name="Reliable" base_name="Default">
      <datareader_qos>
        <reliability><kind>RELIABLE_RELIABILITY_QOS</kind></reliability>
      </datareader_qos>
    </qos_profile>
    <qos_profile name="LastValue" base_name="Reliable">
      <datawriter_qos>
        <durability><kind>TRANSIENT_LOCAL_DURABILITY_QOS</kind></durability>
      </datawriter_qos>
      <datareader_qos>
        <durability><kind>TRANSIENT_LOCAL_DURABILITY_QOS</kind></durability>
      </datareader_qos>
    </qos_profile>
    <qos_profile name="AllSamples" base_name="Reliable">
      <datawriter_qos>
        <history><kind>KEEP_ALL_HISTORY_QOS</kind></history>
        <resource_limits><max_samples>1000</max_samples></resource_limits>
      </datawriter_qos>
      <datareader_qos>
        <history><kind>KEEP_ALL_HISTORY_QOS</kind></history>
        <resource_limits><max_samples>1000</max_samples></resource_limits>
      </datareader_qos>
    </qos_profile>
  </qos_library>
</dds>)";

} // namespace zuv::ddsxml

#endif
