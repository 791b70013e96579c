import * as echarts from 'echarts/core';
import { BarChart, LineChart, TreemapChart } from 'echarts/charts';
import { GridComponent, TooltipComponent, LegendComponent, MarkLineComponent, MarkPointComponent, AriaComponent } from 'echarts/components';
import { SVGRenderer } from 'echarts/renderers';
echarts.use([BarChart, LineChart, TreemapChart, GridComponent, TooltipComponent, LegendComponent, MarkLineComponent, MarkPointComponent, AriaComponent, SVGRenderer]);
window.echarts = echarts;
