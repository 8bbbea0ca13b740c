   '/// <report name="Deals едц" database="Demo">  
'///<page guid="{A}" name="Deals">
'/// <SECTION name="Detail">
	If x Then y = 1
'/// </Section>
'/// <section name="Missing page">
'/// </section>
'/// </page>
'/// </report>
