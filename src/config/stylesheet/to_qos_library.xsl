<?xml version="1.0" encoding="UTF-8"?>
<!-- Makes of a configuration document, or of one QoS element of it, a document for the reader of QoS profiles:
     variables, types and QoS libraries as they are, then a library that holds the element as a profile. -->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:saxon="http://icl.com/saxon"
    exclude-result-prefixes="saxon">

  <xsl:output method="xml" indent="yes"/>

  <!-- The name of the generated library. -->
  <xsl:param name="BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM"/>
  <!-- The name of the profile in it. -->
  <xsl:param name="BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM"/>
  <!-- The topics that the QoS is for; empty for no filter. -->
  <xsl:param name="BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM"/>

  <xsl:variable name="NAME_CONCATENATOR" select="'-'"/>
  <xsl:variable name="NAME_FQN_SEPARATOR" select="'::'"/>
  <xsl:variable name="LOWER_CASE_ALPHABET" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="UPPER_CASE_ALPHABET" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>

  <xsl:template match="/*">
    <xsl:variable name="tag" select="local-name()"/>
    <dds>
      <xsl:if test="$tag = 'dds'">
        <xsl:copy-of select="@*"/>
      </xsl:if>
      <xsl:apply-templates select="configuration_variables"/>
      <xsl:apply-templates select="types"/>
      <xsl:apply-templates select="qos_library"/>
      <qos_library name="{$BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM}">
        <xsl:choose>
          <xsl:when test="$tag = 'dds'"/>
          <xsl:when test="$tag = 'participant_qos' or $tag = 'domain_participant_qos' or
              $tag = 'subscriber_qos' or $tag = 'publisher_qos' or
              $tag = 'datareader_qos' or $tag = 'datawriter_qos'">
            <xsl:call-template name="generate-profile"/>
          </xsl:when>
          <xsl:when test="$tag = 'distributed_logger'">
            <xsl:call-template name="copy-with-line"/>
          </xsl:when>
          <xsl:otherwise>
            <xsl:message terminate="yes">
              <xsl:text>Error at line</xsl:text>
              <xsl:value-of select="saxon:line-number()"/>
              <xsl:text>: Unexpected root element with tag=</xsl:text>
              <xsl:value-of select="$tag"/>
            </xsl:message>
          </xsl:otherwise>
        </xsl:choose>
      </qos_library>
    </dds>
  </xsl:template>

  <xsl:template match="configuration_variables | types | qos_library">
    <xsl:call-template name="copy-with-line"/>
  </xsl:template>

  <!-- The reader counts lines from the first instruction on, and its own again from the second. -->
  <xsl:template name="copy-with-line">
    <xsl:processing-instruction name="zuv-linenumber">
      <xsl:value-of select="saxon:line-number()"/>
    </xsl:processing-instruction>
    <xsl:copy-of select="."/>
    <xsl:processing-instruction name="zuv-linenumber">END-OF-XML-FRAGMENT</xsl:processing-instruction>
  </xsl:template>

  <xsl:template name="generate-profile">
    <qos_profile name="{$BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM}">
      <xsl:element name="{local-name()}">
        <xsl:copy-of select="@*"/>
        <xsl:if test="$BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM != '' and not(@topic_filter)">
          <xsl:attribute name="topic_filter">
            <xsl:value-of select="$BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM"/>
          </xsl:attribute>
        </xsl:if>
        <xsl:copy-of select="*"/>
      </xsl:element>
    </qos_profile>
  </xsl:template>

</xsl:stylesheet>
